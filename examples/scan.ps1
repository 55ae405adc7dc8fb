<#
Scans a network with the plug-in from Windows PowerShell 5.1 (64 bit): loads a setup, checks and configures the
receiver, measures every channel, prints a line for each.

    powershell -File scan.ps1 SETUP [NETWORK]

NETWORK is a network model for the simulated receiver; leave it out with a real one. Exit codes: 0 every channel
synchronised, 1 some channel not, 2 the setup cannot be loaded or the receiver cannot do it.
#>
param(
    [Parameter(Mandatory = $true)] [string] $SetupFile,
    [string] $Network
)
$ErrorActionPreference = 'Stop'
trap {
    [Console]::Error.WriteLine("$_")
    exit 2
}
$productName = 'TVN Host'
$levelColumn, $berColumn, $frameColumn, $merColumn = 15, 16, 20, 27

# The plug-in tells this object what it does. It is C#, because a class of PowerShell's own is not visible to COM. All
# four members have to be there.
Add-Type -TypeDefinition @'
using System;
using System.Runtime.InteropServices;

[ComVisible(true), ClassInterface(ClassInterfaceType.AutoDispatch)]
public class ScanParent
{
    public void Status(string text) { Console.Error.WriteLine("  " + text); }
    // steps is Missing.Value where it is left out.
    public void Progress(double value, object steps) { }
    // column is -1 for the whole row.
    public void CellChanged(int channel, short column) { }
    public void ChannelStart(double frequency, object symbolRate) { }
}
'@

# COM knows nothing of PowerShell's own current folder.
$path = (Resolve-Path -LiteralPath $SetupFile).ProviderPath
$setup = New-Object -ComObject TVN2x.clsSetup
$model = '2x'
$mode = 4
if (-not $setup.Setup.Load($productName, $path, [ref] $model, [ref] $mode)) {
    [Console]::Error.WriteLine("The setup cannot be loaded: $path")
    exit 2
}
$setup.Setup.Mode = $mode
if ($Network) {
    $settings = $setup.Driver.Settings
    $settings.NetworkModel = (Resolve-Path -LiteralPath $Network).ProviderPath
}

# Can this receiver do what the setup asks for?
$check = $setup.CheckHardware
$missing = @()
if ($check.Mode() -eq 0) { $missing += 'operating mode' }
if (-not $check.ExtRef()) { $missing += 'external reference' }
if (-not $check.InputPort()) { $missing += 'input port' }
if (-not $check.SawFilterBw()) { $missing += 'SAW filter' }
if ($missing) {
    [Console]::Error.WriteLine("Receiver $($setup.Driver.SerialNumber) has not got the setup's $($missing -join ', ')")
    exit 2
}

$measurement = $setup.Measurement
$measurement.Parent = New-Object ScanParent
$measurement.SetConfiguration()
$measurement.ResetMeasurement(0)
$synchronised = 0
for ($channel = 1; $channel -le $setup.ListSize; $channel++) {
    [void] $measurement.Measure($channel)
    $frame = $measurement.Result(0, $frameColumn, $channel)
    if ($frame -eq 'OK') { $synchronised++ }
    '{0}  {1} MHz  level {2} {3}  MER {4} dB  BER {5}  frame {6}' -f $setup.UserField($channel),
        $setup.Frequency($channel), $measurement.Result(0, $levelColumn, $channel), $setup.LevelUnit,
        $measurement.Result(0, $merColumn, $channel), $measurement.Result(0, $berColumn, $channel), $frame
}
"$synchronised of $($setup.ListSize) channels synchronised"
exit [int]($synchronised -lt $setup.ListSize)
