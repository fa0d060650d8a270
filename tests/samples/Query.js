// What JScript passes to the catalog and gets back; prints what is wrong.
//
//   cscript //nologo Query.js KEY VERSION     a module with files

var catalog = new ActiveXObject("QmMMUpdater.MMCatalogManager").GetCatalog(1);
var key = WScript.Arguments(0), version = WScript.Arguments(1), names = "";
var module = catalog.CatalogQuery([key, version], 0).Item(1);
if (module.Version != version || catalog.CatalogQuery("x").Count + 1 != 1) WScript.Echo("wrong modules");
for (var e = new Enumerator(module.Files); !e.atEnd(); e.moveNext()) names += e.item().Key;
if (names.indexOf(module.Files.Item(1).Key) != 0) WScript.Echo("wrong files: " + names);
module.Open(module.Path);
try { module.Open("x"); WScript.Echo("no failure"); } catch (failure) {
  if (!/MsiOpenDatabase\(.*\\x\)$/.test(failure.message)) WScript.Echo(failure.message);
}
WScript.Echo("done");
