' What a script gets for a mistake of its own.
Option Explicit
Dim label : Set label = CreateObject("zvsMarklet.Marklet")
On Error Resume Next

Sub ExpectError(what)
  If Err.Number = 0 Then WScript.Echo what & " went through"
  Err.Clear
End Sub

label.Padding = 1
ExpectError "a private property"
label.hwnd = 1
ExpectError "setting a read-only property"
label.ForeColor = "red"
ExpectError "a colour that is a word"
label.Caption = label
ExpectError "an object as a text"
label.LoadIconImageFromFile "only one"
ExpectError "a missing argument"
label.Nonsense
ExpectError "an unknown name"

label.TextEffect = 99
If Err.Number <> 0 Then WScript.Echo "a number outside the enumeration: " & Err.Description
If label.TextEffect <> 99 Then WScript.Echo "a number outside the enumeration was changed"
WScript.Echo "ok"
