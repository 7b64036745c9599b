// Amounts in Persian words from JScript: Ds_AlphaMoney. Run: cscript //nologo money.js
var money = new ActiveXObject("Vx_Main.Ds_AlphaMoney");

var text = money.ConvertAlphaMoney(2500);
WScript.Echo("2500 in words: " + text.length + " characters");

// Words for a cheque: write them to a UTF-16 file, which keeps the Persian letters
// (the console may not). The file goes in a folder of its own, removed afterwards.
var fso = new ActiveXObject("Scripting.FileSystemObject");
var temp = new ActiveXObject("WScript.Shell").Environment("Process")("TEMP");
var folder = fso.BuildPath(temp, fso.GetTempName());
fso.CreateFolder(folder);
var file = fso.BuildPath(folder, "cheque.txt");
var stream = fso.CreateTextFile(file, true, true);       // true: Unicode
stream.WriteLine(money.ConvertAlphaMoney(1250000));
stream.Close();
var back = fso.OpenTextFile(file, 1, false, -1).ReadLine();  // -1: Unicode
WScript.Echo("Read back unchanged: " + (back == money.ConvertAlphaMoney(1250000)));
fso.DeleteFolder(folder);

// The joining word is a property like the scale words.
money.AlphaAnd = " & ";
WScript.Echo("With '&': " + (money.ConvertAlphaMoney(2500).indexOf(" & ") > 0));
WScript.Echo("Done.");
