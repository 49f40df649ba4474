' A session with a simulated instrument in the words of the system's own scripting host.
Option Explicit
Dim faults
faults = 0

Sub Check(what, got, wanted)
  If got = wanted Then
    WScript.Echo what & ": " & got
  Else
    WScript.Echo "FAULT: " & what & " is " & got & " and not " & wanted
    faults = faults + 1
  End If
End Sub

' In the order of the events: a scripting host whose objects tell no numbers of their methods is called by those of the
' events.
Class Listener
  Public Told
  Public Sub StatusMessage(text)
    Told = Told & "[" & text & "]"
  End Sub
  Public Sub InstrWarnings(text)
    Told = Told & "(" & text & ")"
  End Sub
  Public Sub InstrError(text)
    Told = Told & "<" & text & ">"
  End Sub
End Class

Dim instr, listener, cookie, name, info, timing, formats(2), pattern(1), length, commandText
Set instr = CreateObject("TarvikVI.clsInstrInterface")
Set listener = New Listener
listener.Told = ""
cookie = instr.Advise(listener)

Check "Connect", instr.Connect(), True
Check "an event", listener.Told, "[Local Connection]"
Set info = instr.NewRecord("viInfo")
name = ""
Check "the first instrument is there", instr.GetViInfo(1, info, name), True
Check "its name", name, "VP-210"
Check "its slot", info.Slot, 3
Check "the bytes of its record are an array of bytes", VarType(info.Bytes), 8209
Check "OpenInstrument", instr.OpenInstrument(name), True
Check "ChannelCount", instr.ChannelCount(), 2
Check "Reset", instr.InstrumentCommands(0), True

Set timing = instr.NewRecord("udtTimingInfo")
Check "GetTiming", instr.GetTiming(timing), True
Check "the width", timing.dblWidth(1), 0.0000001
timing.dblWidth(1) = 0.00000005
Check "SetTiming", instr.SetTiming(timing), True
Set timing = instr.NewRecord("udtTimingInfo")
Check "GetTiming again", instr.GetTiming(timing), True
Check "the width that was set", timing.dblWidth(1), 0.00000005

formats(1) = False
formats(2) = True
Check "SetRz", instr.SetRz(formats), True
formats(1) = True
formats(2) = False
Check "GetRz", instr.GetRz(formats), True
Check "return to zero, channel 1", formats(1), False
Check "return to zero, channel 2", formats(2), True

pattern(0) = &HA5
pattern(1) = &H3C
Check "SetPatternArray", instr.SetPatternArray(1, pattern, 16), True
pattern(0) = 0
pattern(1) = 0
length = 0
Check "GetPatternArray", instr.GetPatternArray(1, pattern, length), True
Check "its length", length, 16
Check "its first byte", pattern(0), &HA5
Check "its second byte", pattern(1), &H3C

timing.dblWidth(1) = 5
Check "SetTiming that the instrument refuses", instr.SetTiming(timing), True
Check "refusals that came as an event", UBound(Split(listener.Told, "<-221,Settings conflict")), 1

instr.CloseInstrument
Check "IsOnline", instr.IsOnline(True), False
Check "Unadvise", instr.Unadvise(cookie), True
WScript.Echo faults & " faults"
WScript.Quit faults
