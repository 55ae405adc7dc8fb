' The plug-in as a script sees it: every class by its ProgID, members by name, raised errors, a parent object of the
' script's own. Prints what is wrong; exit code 1 when anything is.
Option Explicit

Dim failures : failures = 0

Sub Expect(what, actual, expected)
    If actual = expected Then Exit Sub
    failures = failures + 1
    WScript.Echo what & ": " & actual & " instead of " & expected
End Sub

Sub ExpectError(what, number)
    Expect what, Err.Number, number
    Err.Clear
End Sub

Class ScanParent
    Public Statuses
    Public Steps
    Public Cells
    Public Channel
    Public Sub Status(text)
        Statuses = Statuses & text & "|"
    End Sub
    Public Sub Progress(value, total)
        Steps = Steps + 1
    End Sub
    Public Sub CellChanged(channelIndex, column)
        Cells = Cells + 1
    End Sub
    Public Sub ChannelStart(frequency, symbolRate)
        Channel = frequency & "/" & symbolRate
    End Sub
End Class

Dim setup
Set setup = CreateObject("TVN2x.clsSetup")
Expect "Email", InStr(CreateObject("TVN2x.clsSupport").Email, "@") > 1, True

' A change by name.
setup.ListSize = 3
setup.Frequency(2) = 474.25
setup.SymbolRate(2) = 6.9
setup.Parameter(1, 22) = False
Expect "Frequency(2)", setup.Frequency(2), 474.25
Expect "Parameter(1, 22)", setup.Parameter(1, 22), False
Expect "Dirty", setup.Setup.Dirty, True
Expect "TypeName", TypeName(setup.Setup), "ISetup"

' A raised error with number, source and description.
On Error Resume Next
Err.Clear
setup.Frequency(9) = 1
Expect "Err.Number", Err.Number, 9
Expect "Err.Source", Err.Source, "clsSetup.Frequency"
Expect "Err.Description", Err.Description, "Subscript out of range"
On Error GoTo 0

' What a member hands out through variables.
Dim files, file, model, mode
Set files = CreateObject("Scripting.FileSystemObject")
file = files.GetSpecialFolder(2) & "\" & files.GetTempName
mode = 1
Expect "Save", setup.Setup.Save("TVN Host", "2.0", file), True
Expect "Save to its own file", setup.Setup.Save("TVN Host", "2.0"), True
Expect "Load", setup.Setup.Load("TVN Host", file, model, mode), True
Expect "model and mode", model & mode, "2x4"
files.DeleteFile file

' A scan with a parent object of the script's own, late bound.
Dim measurement, settings, parent
Set measurement = setup.Measurement
Set settings = setup.Driver.Settings
settings.NetworkModel = WScript.Arguments(0)
settings.TimeScale = 0.01
settings.OrderOfQam = 64
setup.OrderOfQam = 64
setup.BerSamples = 0
setup.MaxSettlingTime = 1
setup.Frequency(2) = 474
measurement.ResetMeasurement
Set parent = New ScanParent
measurement.Parent = parent
Expect "Measure", measurement.Measure(2), True
Expect "statuses", parent.Statuses, "Synchronising at 474 MHz|Measuring at 474 MHz|"
Expect "channel", parent.Channel, "474000000/6900000"
Expect "steps", parent.Steps > 20, True
Expect "cells", parent.Cells > 20, True
Expect "frame", measurement.Result(0, 20, 2), "OK"
Expect "status", measurement.Result(1, 13, 2), "Done"
Expect "measured", measurement.Measured(2) And Not measurement.Measured(1), True
Set measurement.Parent = Nothing
Expect "number", Abs(setup.Results.Value(27, 2) - CDbl(measurement.Result(0, 27, 2))) <= 0.05, True
Expect "no number", IsEmpty(setup.Results.Value(13, 2)), True
setup.Results.Result(0, 27, 1) = "38.5"
Expect "result put back", measurement.Result(0, 27, 1), "38.5"

' What is refused, with its reason.
On Error Resume Next
Err.Clear
Set measurement.Parent = CreateObject("TVN2x.clsTimeout")
Expect "the member that no parent lacks", InStr(Err.Description, "Status") > 0, True
ExpectError "no parent", 438
measurement.Parent = "5"
ExpectError "a text as parent", 13
Set measurement.Notes = parent
Expect "a reference as notes", Err.Number <> 0, True
Err.Clear
settings.Value("Network", "Installed Options") = "KTR-H2,KTR-H4,KTR-H5"
setup.ReferenceSource = 1
setup.BerSamples = 1
measurement.SetConfiguration
Expect "source", Err.Source, "clsSetup.SetConfiguration"
Expect "refused", Err.Description, "External 10MHz reference input is not fitted, internal reference will be used"
ExpectError "no input", &H800407D5
Expect "reported", CreateObject("XKTR2x.clsErrorReport").Description, "Let Setup10MhzRef not available"
On Error GoTo 0

If failures > 0 Then WScript.Quit 1
WScript.Echo "all as expected"
