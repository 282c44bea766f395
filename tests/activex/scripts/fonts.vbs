' The font and its members as a script sees them.
Option Explicit
Dim label : Set label = CreateObject("zvsMarklet.Marklet")

Sub Expect(what, expected, found)
  If expected <> found Then WScript.Echo what & ": " & found & " in place of " & expected
End Sub

Expect "FontName", "Tahoma", label.FontName
Expect "FontSize", 8, label.FontSize
Expect "Font.Name", "Tahoma", label.Font.Name
label.FontBold = True
label.FontItalic = True
label.FontUnderline = True
label.FontStrikethru = True
label.FontSize = 14
label.FontName = "DejaVu Sans"
Expect "Font.Bold", True, label.Font.Bold
Expect "Font.Italic", True, label.Font.Italic
Expect "Font.Underline", True, label.Font.Underline
Expect "Font.Strikethrough", True, label.Font.Strikethrough
Expect "Font.Name", "DejaVu Sans", label.Font.Name
Expect "FontSize", 14, label.FontSize

' A member of the font object itself.
label.Font.Bold = False
Expect "FontBold", False, label.FontBold

' One control's font for another: a copy.
Dim other : Set other = CreateObject("zvsMarklet.Marklet")
Set other.Font = label.Font
Expect "the other's FontName", "DejaVu Sans", other.FontName
other.FontName = "Tahoma"
Expect "FontName", "DejaVu Sans", label.FontName
Set other.Font = Nothing
Expect "the other's FontName after Nothing", "Tahoma", other.FontName
WScript.Echo "ok"
