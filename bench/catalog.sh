# shellcheck shell=bash
# Measures the catalog over folders of modules; sourced by tools/bench.

programs=build/release/bench
modules=build/bench-modules
states=(settled "just written")
declare -A labels=([29]=29 [290]=290 [2900]="2,900")

wine_path() { printf 'Z:%s' "$PWD/$1" | tr / "\\\\"; }

# make_generated_modules SIZE: makes a folder of modules with old file times, unless an earlier run has
# made it.
make_generated_modules() {
  local folder=$modules/settled/$1
  [[ ! -d $folder ]] || return 0
  echo "tools/bench: making ${labels[$1]} modules (40 ms each, once)" >&2
  rm -rf -- "$folder.new"
  mkdir -p "$folder.new"
  tools/wine-run "$programs/make_modules.exe" "$(wine_path "$folder.new")" "$1"
  settle "$folder.new"
  mv -T -- "$folder.new" "$folder"
}

settle() {
  find "$1" -name '*.msm' -exec touch -d 2020-01-01 {} +
  sync -f "$1"
}

# Makes a folder with ten copies of each real module, because a dozen modules are too few to measure.
# Fails with a message if there is no folder of real modules beside the checkout.
make_real_modules() {
  local source=../shared/modules folder=$modules/settled/real file number count=0
  if [[ ! -d $source ]]; then
    echo "tools/bench: ../shared/modules is not there: real modules are left out" >&2
    return 1
  fi
  rm -rf -- "$folder"
  mkdir -p "$folder"
  while IFS= read -r file; do
    if ! msiinfo export "$file" ModuleSignature >/dev/null 2>&1; then
      echo "tools/bench: ${file##*/} is left out: the installer cannot read it" >&2
      continue
    fi
    for number in {0..9}; do
      cp --no-preserve=mode -- "$file" "$folder/$number-${file##*/}"
      count=$((count + 1))
    done
  done < <(find "$source" -name '*.msm' | sort)
  ((count)) || return 1
  settle "$folder"
  labels[real]="$count real"
}

# Configures the given folder and nothing else, so that the machine's own settings do not affect the
# measurement.
configure() {
  export QM_MODULE_PATH QM_USER_MODULE_PATH='' QM_GALLERY_ROOT='' QM_DATA_DIR='' \
    QM_FILE_INDEX_DIR='' QM_MODULE_INDEX_DIR=''
  QM_MODULE_PATH=$(wine_path "$1")
}

figure() { tools/wine-run "$programs/bench_catalog.exe" "$1" "$(wine_path "$folder")"; }
set_figure() { tools/wine-run "$programs/bench_set.exe" "$1" "$(wine_path "$folder")"; }
script() { tools/wine-run "$programs/bench_script.exe" "$(wine_path "bench/$1")" "$(wine_path "$folder")" "${@:2}"; }
mmcat() { tools/wine-run build/release/bin/mmcat.exe "$@" --folder "$(wine_path "$folder")"; }
check_modules() { mmcat check || (($? == 1)); }
list_natively() {
  local file
  for file in "$folder"/*.msm; do
    msiinfo export "$file" ModuleSignature
    msiinfo suminfo "$file"
  done
}

# Copies the modules again for the state "just written". Called right before each run that reads them, so
# that the files are only seconds old.
prepare() {
  [[ $state != settled ]] || return 0
  rm -rf -- "$folder"
  mkdir -p "$folder"
  cp --no-preserve=timestamps -t "$folder" -- "$modules/settled/$size"/*.msm
}

# measure_catalog SIZE RUNS: measures all figures over one folder, settled and just written. Runs of a
# figure and of its baseline alternate.
measure_catalog() {
  local size=$1 runs=$2 state folder prefix i
  if [[ $size == real ]]; then
    make_real_modules || return 0
  else
    make_generated_modules "$size"
  fi
  for state in "${states[@]}"; do
    echo "tools/bench: ${labels[$size]} modules, $state" >&2
    folder=$modules/${state// /-}/$size
    prefix="$size $state "
    configure "$folder"
    prepare
    cat -- "$folder"/*.msm >/dev/null # into the page cache
    figure list >/dev/null
    for ((i = 0; i < runs; i++)); do
      prepare
      collect "$prefix" figure list
      collect "$prefix" figure list_calls
      prepare
      collect "$prefix" figure tables
      collect "$prefix" figure table_calls
      collect "$prefix" figure pass_calls
      if [[ $size != 29 && $size != 290 ]]; then
        prepare
        collect "$prefix" set_figure set_load
        collect "$prefix" set_figure set_first
        collect "$prefix" set_figure set_calls
        collect "$prefix" set_figure set_check
        collect "$prefix" set_figure set_plan
        if [[ $size == 2900 && $state == settled ]]; then
          collect "$prefix" set_figure set_find
          collect "$prefix" set_figure set_loop
        fi
      fi
      prepare
      collect "$prefix" figure again
      collect "$prefix" figure pass
      if [[ $size != 29 ]]; then # too few to be worth a script
        prepare
        collect "$prefix" script ListModules.vbs 11
        collect "${prefix}installer_" script ListByInstaller.vbs
      fi
      prepare
      collect "$prefix" timed mmcat_list mmcat list
      if [[ $state == settled ]]; then
        collect "$prefix" timed msiinfo_list list_natively
        collect "$prefix" timed mmcat_check check_modules
        [[ $size == real ]] || measure_generated "$prefix"
      fi
    done
  done
  rm -rf -- "$modules/just-written"
}

# Measures the figures that need generated modules, whose names and files are known. They do not depend on
# the age of the files.
measure_generated() {
  local figure
  for figure in changed find memory; do
    collect "$1" figure "$figure"
  done
}

# catalog_row TEXT MEASURED BASELINE UNIT RULE [SIZES:MUST:GOAL...]: prints a row for each folder in which
# the figure was measured. Where the baseline was measured only with settled files, that value is used.
catalog_row() {
  local size state label baseline sizes must goal limits
  for size in 29 290 2900 real; do
    limits=()
    while IFS=: read -r sizes must goal; do
      [[ ,$sizes, != *",$size,"* ]] || limits=("$must" "$goal")
    done < <(printf '%s\n' "${@:6}")
    for state in "${states[@]}"; do
      label=${labels[$size]-}
      [[ $state == settled ]] || label+=", $state"
      baseline=${3:+$size $state $3}
      [[ -z $baseline || ${samples[$baseline]-} ]] || baseline="$size settled $3"
      row "$1" "$label" "$size $state $2" "$baseline" "$4" "$5" "${limits[@]}"
    done
  done
}

# per_module SIZE: prints the runs of the first list, each divided by the number of modules.
per_module() {
  local value
  for value in ${samples["$1 settled list"]-}; do
    echo "$1 $value"
  done | awk '{ printf "each %.6f\n", $2 / $1 }'
}

print_catalog() {
  local size
  catalog_row "first list of a process; the bare installer calls" \
    list list_calls ms ratio 29:0.5:0.3 290,2900,real:0.33:0.2
  catalog_row "first list, then every table of every module, through the interfaces; the bare installer calls, in two passes as well" \
    tables table_calls ms ratio 29,290,2900,real:0.4:0.25
  catalog_row "the same; the bare installer calls in one pass" tables pass_calls ms ratio
  catalog_row "list when nothing changed; a bare pass over the files" \
    again pass ms above-one 29,290,2900,real:1.10:1.05
  catalog_row "first listing of a VBScript, 8 properties each; a VBScript over \`WindowsInstaller.Installer\`" \
    first installer_first ms faster 290,2900,real:8:12
  catalog_row "second listing of the same script; the same" \
    second installer_first ms faster 290,2900,real:25:40
  catalog_row "\`mmcat list\`, whole process; native \`msiinfo export\` and \`suminfo\` for each file" \
    mmcat_list msiinfo_list ms faster 2900:60:100
  catalog_row "\`mmcat check\`, whole process; the bare installer calls for the same tables" \
    mmcat_check set_calls ms ratio 2900:0.7:
  catalog_row "\`MergeSet.Load\` of a catalog that is listed, every table of every module; the bare installer calls for the same" \
    set_load set_calls ms ratio 2900,real:0.33:
  catalog_row "\`MergeSet.Load\` of a new catalog, which is listed meanwhile; the bare installer calls for the same" \
    set_first set_calls ms ratio
  catalog_row "\`MergeSet.Check\` of the loaded set; loading it" set_check set_load ms ratio 2900:0.3:
  catalog_row "\`MergeSet.Plan\` of a module with 300 modules behind it; loading the set" \
    set_plan set_load ms ratio 2900:0.05:
  catalog_row "\`MergeSet.FindFiles\` with a pattern; a plain loop over the names" \
    set_find set_loop ms ratio 2900:1.5:
  catalog_row "list when one file changed; the bare installer calls of all" \
    changed list_calls ms ratio 2900:0.02:
  catalog_row "\`FindModule\`" find "" ms value 2900:0.2:
  catalog_row "memory of a module, tables unread" memory "" bytes value 290,2900:1400:1024
  for size in 290 2900; do
    [[ -z ${samples["$size settled list"]-} ]] || collect "$size " per_module "$size"
  done
  [[ -z ${samples["290 each"]-} ]] ||
    row "first list, each module of 2,900; of 290" "" "2900 each" "290 each" ms above-one 1.05
}
