"""Scans a network with the plug-in from Python: loads a setup, checks and configures the receiver, measures every
channel, prints a line for each.

    python scan.py SETUP [NETWORK]

Needs pywin32, in a Python of the plug-in's bitness. NETWORK is a network model for the simulated receiver; leave it out
with a real one. Exit codes: 0 every channel synchronised, 1 some channel not, 2 the setup cannot be loaded or the
receiver cannot do it.

With comtypes instead of pywin32 the interfaces are typed, and the parent is a COM object of the host's interface:

    import comtypes, comtypes.client
    setup = comtypes.client.CreateObject("TVN2x.clsSetup")
    tvnint = comtypes.client.GetModule(("{CCFB3DDF-7A82-4F26-92C6-0E7D10C02784}", 1, 0))
    measurement = setup.QueryInterface(tvnint.IMeasure)

    class ScanParent(comtypes.COMObject):
        _com_interfaces_ = [tvnint.IMeasureParent]

        def Status(self, text): ...
        def Progress(self, value, steps): ...
        def CellChanged(self, channel, column): ...
        def ChannelStart(self, frequency, symbol_rate): ...
"""

import os
import sys

import pythoncom
import win32com.client
import win32com.server.util

PRODUCT_NAME = "TVN Host"
LEVEL, BER, FRAME, MER = 15, 16, 20, 27


class ScanParent:
    """The plug-in tells this object what it does. All four members have to be there."""

    _public_methods_ = ["Status", "Progress", "CellChanged", "ChannelStart"]

    def Status(self, text):
        print("  " + text, file=sys.stderr)

    def Progress(self, value, steps=None):
        """steps is given with the first notice of an operation."""

    def CellChanged(self, channel, column):
        """column is -1 for the whole row."""

    def ChannelStart(self, frequency, symbol_rate=None):
        pass


def load(setup, path):
    answer = setup.Setup.Load(PRODUCT_NAME, path, "2x", 4)
    # Model and mode come back behind the result.
    loaded, _, mode = answer if isinstance(answer, tuple) else (answer, "2x", 4)
    if loaded:
        setup.Setup.Mode = mode
    return loaded


def missing(check):
    """What this receiver has not got of the setup's wishes."""
    answers = {
        "operating mode": check.Mode() != 0,
        "external reference": check.ExtRef(),
        "input port": check.InputPort(),
        "SAW filter": check.SawFilterBw(),
    }
    return [name for name, met in answers.items() if not met]


def scan(setup):
    """Returns how many channels are synchronised."""
    measurement = setup.Measurement
    measurement.Parent = win32com.server.util.wrap(ScanParent())
    measurement.SetConfiguration()
    measurement.ResetMeasurement(0)
    synchronised = 0
    for channel in range(1, setup.ListSize + 1):
        measurement.Measure(channel)
        level, ber, frame, mer = (measurement.Result(0, column, channel) for column in (LEVEL, BER, FRAME, MER))
        synchronised += frame == "OK"
        print(
            f"{setup.UserField(channel)}  {setup.Frequency(channel)} MHz  level {level} {setup.LevelUnit}"
            f"  MER {mer} dB  BER {ber}  frame {frame}"
        )
    return synchronised


def main(arguments):
    if not 1 <= len(arguments) <= 2:
        print("usage: python scan.py SETUP [NETWORK]", file=sys.stderr)
        return 2
    setup = win32com.client.Dispatch("TVN2x.clsSetup")
    path = os.path.abspath(arguments[0])
    if not load(setup, path):
        print(f"The setup cannot be loaded: {path}", file=sys.stderr)
        return 2
    if len(arguments) > 1:
        setup.Driver.Settings.NetworkModel = os.path.abspath(arguments[1])
    lacking = missing(setup.CheckHardware)
    if lacking:
        print(f"Receiver {setup.Driver.SerialNumber} has not got the setup's {', '.join(lacking)}", file=sys.stderr)
        return 2
    synchronised = scan(setup)
    print(f"{synchronised} of {setup.ListSize} channels synchronised")
    return 0 if synchronised == setup.ListSize else 1


if __name__ == "__main__":
    try:
        sys.exit(main(sys.argv[1:]))
    except pythoncom.com_error as error:
        print(f"{error.strerror}: {error.excepinfo}", file=sys.stderr)
        sys.exit(2)
