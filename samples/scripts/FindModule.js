// Finds modules in the catalog of merge modules.
//
//   cscript //nologo FindModule.js ID[:LANGUAGE] [VERSION]
//
// The server must be registered. On 64-bit Windows use the 32-bit script host,
// %SystemRoot%\SysWOW64\cscript.exe. Quits with 0 when there is such a module, else with 3.

var installerProject = 1;
var catalog = new ActiveXObject("QmMMUpdater.MMCatalogManager").GetCatalog(installerProject);
var query = WScript.Arguments(0);
var version = WScript.Arguments.length > 1 ? WScript.Arguments(1).toLowerCase() : "";
var found = 0;

// The query of VBScript can hold the version as well: Array(key, version).
for (var modules = new Enumerator(catalog.CatalogQuery(query)); !modules.atEnd(); modules.moveNext()) {
  var module = modules.item();
  if (version == "" || module.Version.toLowerCase() == version) {
    WScript.Echo(module.Key + " " + module.Version + " " + module.DisplayName + " (" +
                 (module.Path || "object gallery") + ")");
    found++;
  }
}
WScript.Quit(found ? 0 : 3);
