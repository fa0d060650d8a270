// Lists which of the given merge modules deliver a file.
//
//   cscript //nologo FindFile.js NAME FILE.msm...
//
// The server must be registered. Exits with 0 if a module delivers the file, with 4 if a module could not be
// read, otherwise with 3.

if (WScript.Arguments.length < 2) {
  WScript.Echo("usage: FindFile.js NAME FILE.msm...");
  WScript.Quit(2);
}
var wanted = WScript.Arguments(0).toLowerCase();
var module = new ActiveXObject("QmMMUpdater.MergeModule2");
var found = 0, unreadable = 0;

for (var i = 1; i < WScript.Arguments.length; i++) {
  try {
    module.Open(WScript.Arguments(i));
  } catch (failure) {
    WScript.Echo(WScript.Arguments(i) + ": " + failure.message);
    unreadable++;
    continue;
  }
  for (var files = new Enumerator(module.Files); !files.atEnd(); files.moveNext()) {
    // The table holds "SHORT~1.DLL|LongName.dll", or a single name.
    var names = files.item().FileName.toLowerCase().split("|");
    if (names[0] == wanted || names[names.length - 1] == wanted) {
      WScript.Echo(module.Key + ": " + files.item().Key);
      found++;
    }
  }
}
WScript.Quit(!found && !unreadable ? 3 : unreadable ? 4 : 0);
