' Prepares what the examples of docs/mergeset.md talk of.
Dim catalog, loaded, mergeSet, module, file, component, action, requirement, exclusion, table, column, row
Dim progress, conflict, fix, chain, needed, other, finding, value, plan, planned, missing, cycle, user, deliverer, description, failure
Set catalog = CreateObject("QmMMUpdater.MMCatalog")
Set loaded = CreateObject("QmMMUpdater.MergeSet")
loaded.Load catalog

Class ProgressShower
  Public Default Function Show(number, total)
    WScript.Echo number & " of " & total
  End Function
End Class

' The only module with custom actions also lacks what it needs, and needs modules that need one another.
Sub Prepare()
  Set mergeSet = loaded
  Set progress = New ProgressShower
  Set exclusion = mergeSet.ExclusionsOf("")(1)
  Set user = mergeSet.UsersOf("GlyphCache.BAAAC131_3F57_483D_9A25_297EE82294C2")(1)
  For Each module In mergeSet.Modules
    If module.CustomActions.Count > 0 Then Exit For
  Next
  Set file = module.Files(1)
  Set component = module.Components(1)
  Set action = module.CustomActions(1)
  Set requirement = module.Requirements(1)
  Set table = module.Tables("Directory")
  Set column = table.Columns(1)
  Set row = table.Rows(1)
  For Each finding In mergeSet.Check()
    If finding.Values.Count > 0 Then Exit For
  Next
  Set value = finding.Values(1)
  Set plan = mergeSet.Plan(Array(module.Key, user.Module.Key))
  Set planned = plan.Modules(1)
  Set missing = plan.Missing(1)
  Set cycle = plan.Cycles(1)
  Set conflict = plan.Conflicts(1)
  Set fix = conflict.Fixes(1)
  Set deliverer = mergeSet.FindDeliverers(file.Name)(1)
  Set description = mergeSet.GalleryDescriptions(1)
End Sub
