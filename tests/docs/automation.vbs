' Prepares what the examples of docs/automation.md talk of.
Dim manager, catalog, module, source, file, dependency, exclusion, action, dialog, download
Set manager = CreateObject("QmMMUpdater.MMCatalogManager")

' The elements come from whatever module has some.
Sub Prepare()
  Dim candidate
  Set catalog = manager.GetCatalog(1)
  Set source = catalog.Sources(1)
  For Each candidate In catalog.MergeModules
    If candidate.Files.Count > 0 And candidate.Dependencies.Count > 0 Then Set module = candidate
    If candidate.Dependencies.Count > 0 Then Set dependency = candidate.Dependencies(1)
    If candidate.Exclusions.Count > 0 Then Set exclusion = candidate.Exclusions(1)
    If candidate.CustomActions.Count > 0 Then Set action = candidate.CustomActions(1)
    If candidate.Dialogs.Count > 0 Then Set dialog = candidate.Dialogs(1)
    If candidate.DownloadFiles.Count > 0 Then Set download = candidate.DownloadFiles(1)
  Next
  Set file = module.Files(1)
End Sub
