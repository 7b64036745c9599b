// Collections from JScript: Ds_ListCollection and its Ds_DataCollection records.
// Run: cscript //nologo collections.js
var people = new ActiveXObject("Vx_Main.Ds_ListCollection");

// Add(ValueA, key, ValueB ...) appends a record and returns it.
people.Add("Sara", "s1", "Tehran");
people.Add("Reza", "r7", "Shiraz");
var rec = people.Add("Mina", "m2", "Tabriz");
rec.ValueC = 28;                                  // values can be set later too
WScript.Echo("Records: " + people.Count);

// Item by position (from 1) or key (case ignored). JScript calls it as a method.
WScript.Echo("By key R7: " + people.Item("R7").ValueA);
for (var i = 1; i <= people.Count; i++) {
    WScript.Echo("  " + people.Item(i).sKey + ": " + people.Item(i).ValueA + " of " + people.Item(i).ValueB);
}

// Nested lists.
people.Item("m2").AddItem.Add("Ali", "a1");
WScript.Echo("Mina's list: " + people.Item("m2").AddItem.Item(1).ValueA);

// Errors arrive as exceptions; the runtime's number is in the low 16 bits.
try {
    people.Item("nobody");
} catch (e) {
    WScript.Echo("Unknown key: error " + (e.number & 0xFFFF));   // 5
}
try {
    people.Item(9);
} catch (e) {
    WScript.Echo("Position 9: error " + (e.number & 0xFFFF));    // 9
}

people.Remove(1);
WScript.Echo("After Remove: " + people.Count + ", first " + people.Item(1).ValueA);
people.Clear();
WScript.Echo("Done.");
