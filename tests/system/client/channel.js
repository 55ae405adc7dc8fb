// A channel from JScript: SETUP NETWORK CHANNEL. Prints whether it is loaded, and the channel's frame synchronisation.
var setup = new ActiveXObject("TVN2x.clsSetup");
var loaded = setup.Setup.Load("TVN Host", WScript.Arguments(0), "2x", 4);
setup.Driver.Settings.NetworkModel = WScript.Arguments(1);
setup.Driver.Settings.TimeScale = 0.01;
var channel = Number(WScript.Arguments(2));
setup.Measurement.SetConfiguration();
setup.Measurement.ResetMeasurement(0);
var measured = setup.Measurement.Measure(channel);
WScript.Echo([loaded, measured, setup.Measurement.Result(0, 20, channel)].join(" "));
