// Lists the modules of the catalog that need a module, directly or through others.
//
//   cscript //nologo WhoUses.js ID[:LANGUAGE]
//
// The server and QmMergeSet.dll must be registered. Exits with 0, or with 3 if the catalog does
// not have the module.

if (WScript.Arguments.length != 1) {
  WScript.Echo("usage: WhoUses.js ID[:LANGUAGE]");
  WScript.Quit(2);
}
var mergeSet = new ActiveXObject("QmMMUpdater.MergeSet");
mergeSet.Load(new ActiveXObject("QmMMUpdater.MMCatalog"));
var key = WScript.Arguments(0);
if (mergeSet.FindModules(key).Count == 0) {
  WScript.Echo(key + ": the catalog has no such module");
  WScript.Quit(3);
}
var users = mergeSet.UsersOf(key);
for (var all = new Enumerator(users); !all.atEnd(); all.moveNext()) {
  var user = all.item();
  WScript.Echo(user.Module.Key + " " + user.Module.Version + " needs " + user.Through.Key);
}
if (users.Count == 0) {
  WScript.Echo("No module needs " + key);
}
