"""Lists what has to be merged for some modules, in merge order, and what is missing.

    py plan_merge.py KEY...

The server and QmMergeSet.dll must be registered. Needs Python with pywin32 (python -m pip install pywin32).
Exits with 0 if nothing is missing, otherwise with 1.
"""

import sys

from win32com.client import Dispatch


def main(keys: list[str]) -> int:
    merge_set = Dispatch("QmMMUpdater.MergeSet")
    merge_set.Load(Dispatch("QmMMUpdater.MMCatalog"))
    plan = merge_set.Plan(keys)
    for planned in plan.Modules:
        print(f"{planned.Module.Path} ({planned.Reason})")
    for missing in plan.Missing:
        print(f"{missing.NeededBy.Key} needs {missing.Requirement.Key}: {missing.Reason}")
    return 1 if plan.Missing.Count else 0


if __name__ == "__main__":
    if len(sys.argv) == 1:
        print("usage: plan_merge.py KEY...", file=sys.stderr)
        sys.exit(2)
    sys.exit(main(sys.argv[1:]))
