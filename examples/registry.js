// The registry from JScript: clsReg, under a key of its own in HKEY_CURRENT_USER that
// is removed at the end. Run: cscript //nologo registry.js
// HKEY_CURRENT_USER. The roots are signed 32-bit numbers: "| 0" makes JScript's
// 0x80000001 (a double, 2147483649) the Long -2147483647 the library expects.
var HKCU = 0x80000001 | 0;
var base = "Software\\Vx_Main registry example (JScript)";
var reg = new ActiveXObject("Vx_Main.clsReg");

reg.WriteString(HKCU, base, "Name", "Vx_Main");
reg.WriteDWord(HKCU, base, "Runs", 3);
reg.CreateKey(HKCU, base + "\\Recent");

WScript.Echo("Name: " + reg.ReadString(HKCU, base, "Name"));
WScript.Echo("Runs: " + reg.ReadDWord(HKCU, base, "Runs"));
// A default applies when the key itself is missing.
WScript.Echo("Default: " + reg.ReadString(HKCU, base + "\\Missing", "Name", "(none)"));

// Values as objects; lists are read with Item, by position (from 1) or name.
var values = reg.ListValues(HKCU, base);
for (var i = 1; i <= values.Count; i++) {
    var v = values.Item(i);
    WScript.Echo("  " + v.KeyName + " = " + v.DataValue + " (type " + v.Datatype + ")");
}
var keys = reg.ListKeys(HKCU, base);
WScript.Echo("Subkey: " + keys.Item(1).KeyName);

// Everything goes in one call: the key and all below it.
reg.KeyDelete("HKEY_CURRENT_USER\\" + base);
WScript.Echo("Still there: " + reg.IsHasKey(HKCU, base));
WScript.Echo("Done.");
