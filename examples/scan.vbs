' Scans a network with the plug-in from VBScript: loads a setup, checks and configures the receiver, measures every
' channel, prints a line for each.
'
'     cscript //nologo scan.vbs SETUP [NETWORK]
'
' NETWORK is a network model for the simulated receiver; leave it out with a real one. Exit codes: 0 every channel
' synchronised, 1 some channel not, 2 the setup cannot be loaded or the receiver cannot do it.
Option Explicit

Const productName = "TVN Host"
Const levelColumn = 15, berColumn = 16, frameColumn = 20, merColumn = 27

' The plug-in tells this object what it does. All four members have to be there.
Class ScanParent
    Public Sub Status(text)
        WScript.Echo "  " & text
    End Sub
    ' total is the number of steps, and of type Error where it is left out.
    Public Sub Progress(value, total)
    End Sub
    ' column is -1 for the whole row.
    Public Sub CellChanged(channel, column)
    End Sub
    Public Sub ChannelStart(frequency, symbolRate)
    End Sub
End Class

' What this receiver has not got of the setup's wishes; "" where it can do all of it.
Function Missing(check)
    Missing = ""
    If check.Mode = 0 Then Missing = Missing & " operating mode"
    If Not check.ExtRef Then Missing = Missing & " external reference"
    If Not check.InputPort Then Missing = Missing & " input port"
    If Not check.SawFilterBw Then Missing = Missing & " SAW filter"
End Function

' Measures a channel and prints it; True where it is synchronised.
Function Measure(setup, measurement, channel)
    Dim frame
    measurement.Measure channel
    frame = measurement.Result(0, frameColumn, channel)
    WScript.Echo setup.UserField(channel) & "  " & setup.Frequency(channel) & " MHz  level " & _
        measurement.Result(0, levelColumn, channel) & " " & setup.LevelUnit & "  MER " & _
        measurement.Result(0, merColumn, channel) & " dB  BER " & measurement.Result(0, berColumn, channel) & _
        "  frame " & frame
    Measure = (frame = "OK")
End Function

' Returns the exit code.
Function Scan(path, network)
    Dim setup, measurement, model, mode, channel, synchronised
    Scan = 2
    Set setup = CreateObject("TVN2x.clsSetup")
    model = "2x" : mode = 4
    If Not setup.Setup.Load(productName, path, model, mode) Then
        WScript.Echo "The setup cannot be loaded: " & path
        Exit Function
    End If
    setup.Setup.Mode = mode
    If network <> "" Then setup.Driver.Settings.NetworkModel = network
    If Missing(setup.CheckHardware) <> "" Then
        WScript.Echo "Receiver " & setup.Driver.SerialNumber & " has not got the setup's:" & _
            Missing(setup.CheckHardware)
        Exit Function
    End If

    Set measurement = setup.Measurement
    Set measurement.Parent = New ScanParent
    measurement.SetConfiguration
    measurement.ResetMeasurement
    synchronised = 0
    For channel = 1 To setup.ListSize
        If Measure(setup, measurement, channel) Then synchronised = synchronised + 1
    Next
    Set measurement.Parent = Nothing
    WScript.Echo synchronised & " of " & setup.ListSize & " channels synchronised"
    If synchronised = setup.ListSize Then Scan = 0 Else Scan = 1
End Function

Dim files, network, exitCode
If WScript.Arguments.Count < 1 Then
    WScript.Echo "usage: cscript //nologo scan.vbs SETUP [NETWORK]"
    WScript.Quit 2
End If
Set files = CreateObject("Scripting.FileSystemObject")
network = ""
If WScript.Arguments.Count > 1 Then network = files.GetAbsolutePathName(WScript.Arguments(1))
' An error that nobody takes care of would end the script with exit code 0.
exitCode = 2
On Error Resume Next
exitCode = Scan(files.GetAbsolutePathName(WScript.Arguments(0)), network)
If Err.Number <> 0 Then WScript.Echo Err.Source & ": " & Err.Description
WScript.Quit exitCode
