// Lists the modules of the catalog that need a module, directly or through others.
//
//   cscript //nologo WhoUses.js ID[:LANGUAGE]
//
// The server and QmMergeSet.dll must be registered. Exits with 0 if a module needs it, otherwise with 3.

if (WScript.Arguments.length != 1) {
  WScript.Echo("usage: WhoUses.js ID[:LANGUAGE]");
  WScript.Quit(2);
}
var mergeSet = new ActiveXObject("QmMMUpdater.MergeSet");
mergeSet.Load(new ActiveXObject("QmMMUpdater.MMCatalog").MergeModules);
var users = mergeSet.UsersOf(WScript.Arguments(0));
for (var all = new Enumerator(users); !all.atEnd(); all.moveNext()) {
  var user = all.item();
  WScript.Echo(user.Module.Key + " " + user.Module.Version + " needs " + user.Through.Key);
}
WScript.Quit(users.Count ? 0 : 3);
