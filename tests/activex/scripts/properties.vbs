' Every property as a script sees it. Prints what is wrong, and "ok" at the end.
Option Explicit
Dim label : Set label = CreateObject("zvsMarklet.Marklet")

Sub Expect(what, expected, found)
  If VarType(expected) <> VarType(found) Then
    WScript.Echo what & ": type " & VarType(found) & " in place of " & VarType(expected)
  ElseIf expected <> found Then
    WScript.Echo what & ": " & found & " in place of " & expected
  End If
End Sub

label.Caption = "Hello <b>World</b>"
Expect "Caption", "Hello <b>World</b>", label.Caption
label.caption = 12
Expect "Caption from a number", "12", label.CAPTION
label.UniToolTipText = "tip"
Expect "UniToolTipText", "tip", label.UniToolTipText
label.ImageKey = "a"
Expect "ImageKey", "a", label.ImageKey
label.ImageKeyhover = "b"
Expect "ImageKeyhover", "b", label.ImageKeyHover

label.AutoSize = True
Expect "AutoSize", True, label.AutoSize
label.AutoSize = False
Expect "AutoSize", False, label.AutoSize
label.WordWrap = True
Expect "WordWrap", True, label.WordWrap
label.WordWrap = False
Expect "WordWrap", False, label.WordWrap
label.UseMnemonic = True
Expect "UseMnemonic", True, label.UseMnemonic
label.UseMnemonic = False
Expect "UseMnemonic", False, label.UseMnemonic
label.Enabled = True
Expect "Enabled", True, label.Enabled
label.Enabled = False
Expect "Enabled", False, label.Enabled
label.Enabled = True

label.BackStyle = 1
Expect "BackStyle", CLng(1), label.BackStyle
label.BackStyle = 7
Expect "BackStyle", CLng(7), label.BackStyle
label.Appearance = 1
Expect "Appearance", CLng(1), label.Appearance
label.Appearance = 7
Expect "Appearance", CLng(7), label.Appearance
label.BorderStyle = 1
Expect "BorderStyle", CLng(1), label.BorderStyle
label.BorderStyle = 7
Expect "BorderStyle", CLng(7), label.BorderStyle
label.TextEffect = 1
Expect "TextEffect", CLng(1), label.TextEffect
label.TextEffect = 7
Expect "TextEffect", CLng(7), label.TextEffect
label.ImageAlignment = 1
Expect "ImageAlignment", CLng(1), label.ImageAlignment
label.ImageAlignment = 7
Expect "ImageAlignment", CLng(7), label.ImageAlignment
label.ImageSize = 1
Expect "ImageSize", CLng(1), label.ImageSize
label.ImageSize = 7
Expect "ImageSize", CLng(7), label.ImageSize
label.MousePointer = 1
Expect "MousePointer", CLng(1), label.MousePointer
label.MousePointer = 7
Expect "MousePointer", CLng(7), label.MousePointer

' Colours, written as a script would: signed, unsigned, hexadecimal.
label.BackColor = &H8000000F
Expect "BackColor", CLng(-2147483633), label.BackColor
label.ForeColor = 2147483663
Expect "ForeColor", CLng(-2147483633), label.ForeColor
label.EffectColor = RGB(1, 2, 3)
Expect "EffectColor", CLng(197121), label.EffectColor

Expect "hwnd", CLng(0), label.hwnd
Expect "LoadIconImageFromFile with a digit", False, label.LoadIconImageFromFile("image.png", "1a")
Expect "LoadIconImageFromFile with a short name", False, label.LoadIconImageFromFile("ab", "a")
Expect "LoadIconImageFromFile without a key", False, label.LoadIconImageFromFile("image.png", "")
WScript.Echo "ok"
