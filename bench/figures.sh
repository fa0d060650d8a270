# shellcheck shell=bash
# Collects the runs of figures and prints them as rows of a table; sourced by tools/bench.

# The values of all runs of a figure, by its name, separated by blanks.
declare -A samples

# collect PREFIX COMMAND...: runs a command and adds the values that it prints, one line "FIGURE VALUE"
# each, to the figures with that prefix.
collect() {
  local prefix=$1 figure value output
  shift
  output=$("$@")
  while read -r figure value; do
    samples[$prefix$figure]+=" $value"
  done <<<"$output"
}

# timed FIGURE COMMAND...: runs a command and prints how many milliseconds it took, as a run of the figure.
timed() {
  local figure=$1 begin end
  shift
  begin=$EPOCHREALTIME
  "$@" >/dev/null
  end=$EPOCHREALTIME
  awk -v figure="$figure" -v begin="$begin" -v end="$end" \
    'BEGIN { printf "%s %.3f\n", figure, (end - begin) * 1000 }'
}

# row TEXT MODULES MEASURED BASELINE UNIT RULE [MUST [GOAL]]: prints a row of the table from two figures,
# given by name; nothing if MEASURED was not measured. bench/row.awk describes the rules.
row() {
  [[ ${samples[$3]-} ]] || return 0
  awk -v text="$1" -v modules="$2" -v measured="${samples[$3]}" -v baseline="${4:+${samples[$4]-}}" \
    -v unit="$5" -v rule="$6" -v must="${7-}" -v goal="${8-}" -f bench/row.awk
}

table_head() {
  echo "| figure; what it is compared with | modules | measured | baseline | ratio | spread | must | goal | result |"
  echo "| --- | ---: | ---: | ---: | ---: | ---: | ---: | ---: | --- |"
}
