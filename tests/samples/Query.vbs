' What VBScript passes to the catalog and gets back; prints what is wrong.
'
'   cscript //nologo Query.vbs KEY VERSION     a module with files

Option Explicit
Dim catalog, module, key, version, query, count, ofKey, file, names
Set catalog = CreateObject("QmMMUpdater.MMCatalogManager").GetCatalog(1)
key = WScript.Arguments(0)
version = WScript.Arguments(1)

Set module = catalog.CatalogQuery(Array(key, UCase(version)), count)(1)
Expect "an array, and the count by reference", module.Version & count, version & "1"
query = Array(key, version)
ofKey = catalog.CatalogQuery(key).Count
Expect "a variable", catalog.CatalogQuery(query).Count & catalog.CatalogQuery(key, key).Count, "1" & ofKey
Expect "one variable for key and count", key, ofKey
catalog.CatalogQuery "Nobody.1", count
Expect "nothing", count, 0
Expect "items by key and position", module.Files(1).Key, module.Files.Item(module.Files(1).Key).Key
For Each file In module.Files: names = names & file.Key: Next
Expect "enumeration", Left(names, Len(module.Files(1).Key)), module.Files(1).Key
Expect "reserved members", catalog.Reserved1(1, 2) & catalog.Reserved8(3) & catalog.Refresh, "000"

On Error Resume Next
catalog.CatalogQuery Array(1)
Expect "a failure", Hex(Err.Number) & Err.Description, _
  "80070057The query is neither a module key nor an array of key and version."
module.Files.Item "NoFile"
Expect "no such item", Err.Number, 5 ' as VBScript has it
Err.Clear
module.Open module.Path & "x"
Expect "a file that is missing", Hex(Err.Number) & InStr(Err.Description, "MsiOpenDatabase("), "80070002" & _
  (Len(Err.Description) - Len("MsiOpenDatabase(" & module.Path & ")") + 1)
WScript.Echo "done"

Sub Expect(what, found, expected)
  If CStr(found) <> CStr(expected) Then WScript.Echo what & ": " & found & " instead of " & expected
End Sub
