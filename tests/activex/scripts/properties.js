// What a JScript program does with a control.
var label = new ActiveXObject("zvsMarklet.Marklet");

function expect(what, expected, actual) {
  if (expected !== actual) WScript.Echo(what + ": expected " + expected + ", not " + actual);
}

label.Caption = "<b>\u0391</b> & more";
expect("Caption", "<b>\u0391</b> & more", label.Caption);
label.BackColor = -2147483633;
expect("a system colour", -2147483633, label.BackColor);
label.BackColor = 2147483663;
expect("the same, unsigned", -2147483633, label.BackColor);
label.AutoSize = true;
expect("AutoSize", true, label.AutoSize);
label.ImageSize = 9;
expect("a size that there isn't", 9, label.ImageSize);
label.Font.Italic = true;
expect("a member of the font", true, label.FontItalic);
expect("a key that begins with a digit", false, label.LoadIconImageFromFile("Z:\\none.png", "1a"));

var failed = false;
try {
  label.ForeColor = "red";
} catch (error) {
  failed = true;
}
expect("a colour that is a word fails", true, failed);
WScript.Echo("ok");
