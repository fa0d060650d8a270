// Finds modules in the catalog of merge modules.
//
//   cscript //nologo FindModule.js ID[:LANGUAGE] [VERSION]
//
// The server must be registered. Exits with 0 if there is such a module, otherwise with 3.

if (WScript.Arguments.length < 1) {
  WScript.Echo("usage: FindModule.js ID[:LANGUAGE] [VERSION]");
  WScript.Quit(2);
}
var installerProject = 1;
var catalog = new ActiveXObject("QmMMUpdater.MMCatalogManager").GetCatalog(installerProject);
var query = WScript.Arguments(0);
var version = WScript.Arguments.length > 1 ? WScript.Arguments(1).toLowerCase() : "";
var found = 0;

// The query may also contain the version: Array(key, version) in VBScript, [key, version] here.
for (var modules = new Enumerator(catalog.CatalogQuery(query)); !modules.atEnd(); modules.moveNext()) {
  var module = modules.item();
  if (version == "" || module.Version.toLowerCase() == version) {
    WScript.Echo(module.Key + " " + module.Version + " " + module.DisplayName + " (" +
                 (module.Path || "object gallery") + ")");
    found++;
  }
}
WScript.Quit(found ? 0 : 3);
