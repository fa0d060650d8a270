# shellcheck shell=bash
# Measures the 64-bit build against the 32-bit one; sourced by tools/bench. Both run in one Wine prefix, in
# turn, because the two kinds of prefix differ in speed.

# measure_architectures RUNS: reads 2,900 settled modules.
measure_architectures() {
  local runs=$1 folder=$modules/settled/2900 build figure i
  make_generated_modules 2900
  use_prefix bench-wine64 --x64
  configure "$folder"
  cat -- "$folder"/*.msm >/dev/null # into the page cache
  echo "tools/bench: 2,900 modules, 64-bit and 32-bit" >&2
  for build in release release-x64; do
    figure_of "$build" list >/dev/null
  done
  for ((i = 0; i < runs; i++)); do
    for figure in list tables again pass; do
      for build in release-x64 release; do
        collect "$build " figure_of "$build" "$figure"
      done
    done
    for build in release-x64 release; do
      collect "$build " timed mmcat_list tools/wine-run --x64 "build/$build/bin/mmcat.exe" list \
        --folder "$(wine_path "$folder")"
    done
  done
  use_prefix bench-wine
}

figure_of() {
  tools/wine-run --x64 "build/$1/bench/bench_catalog.exe" "$2" "$(wine_path "$modules/settled/2900")"
}

print_architectures() {
  architecture_row "first list of a process, 64-bit build; 32-bit build" list
  architecture_row "first list, then every table of every module, 64-bit build; 32-bit build" tables
  architecture_row "list when nothing changed, 64-bit build; 32-bit build" again
  architecture_row "bare pass over the files, which that list contains, 64-bit; 32-bit" pass
  architecture_row "\`mmcat list\`, whole process, 64-bit build; 32-bit build" mmcat_list
}

architecture_row() {
  local must=1.0
  [[ $2 != pass ]] || must= # measures the system, not the server
  row "$1" 2,900 "release-x64 $2" "release $2" ms ratio $must
}
