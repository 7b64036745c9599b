// Shamsi and Miladi dates from JScript: Ds_Calendar. Run: cscript //nologo dates.js
var cal = new ActiveXObject("Vx_Main.Ds_Calendar");

WScript.Echo("Shamsi 1403/01/01 is Miladi " + cal.MiladyDate("1403/01/01"));   // 2024/3/20
WScript.Echo("Miladi 2006/08/03 is Shamsi " + cal.ShamsiDate("2006/08/03"));   // 1385/05/12

// JScript cannot pass a variable by reference, so the date in words comes from
// CalendarShamsi itself rather than through ShamsiDate's third argument.
var words = cal.CalendarShamsi("2006/08/03");
WScript.Echo("In words: " + words.length + " characters");

// A JScript Date goes in as year/month/day text. (ShamsiDate keeps the century at 13:
// from April 2021 on its years are off; MiladyDate is exact.)
var d = new Date(2006, 7, 3);
var text = d.getFullYear() + "/" + (d.getMonth() + 1) + "/" + d.getDate();
WScript.Echo(text + " by ConvertDateFormat: " + cal.ConvertDateFormat(text, 1));   // 1 = to Shamsi

try {
    cal.MiladyDate("1385/xx/12");
} catch (e) {
    WScript.Echo("A month that is no number: error " + (e.number & 0xFFFF));   // 13
}
WScript.Echo("Done.");
