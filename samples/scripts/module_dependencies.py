"""Lists what the modules of the catalog need and marks what the catalog does not have.

    py module_dependencies.py

The server must be registered. Needs Python with pywin32 (python -m pip install pywin32).
Exits with 0 if the catalog has everything, otherwise with 3.
"""

import sys

import win32com.client


def main() -> int:
    catalog = win32com.client.Dispatch("QmMMUpdater.MMCatalog")
    # A file that could not be read has no ID, and reading its tables fails.
    modules = [module for module in catalog.MergeModules if module.ModuleID]
    known = {module.ModuleID.lower() for module in modules}

    all_there = True
    for module in modules:
        for dependency in module.Dependencies:
            is_known = dependency.ModuleID.lower() in known
            all_there = all_there and is_known
            remark = "" if is_known else ", which the catalog does not have"
            print(f"{module.Key} needs {dependency.Key} {dependency.Version}".rstrip() + remark)
    return 0 if all_there else 3


if __name__ == "__main__":
    sys.exit(main())
