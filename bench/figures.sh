# shellcheck shell=bash
# Runs of figures and the rows of the table that is made of them; for tools/bench.

# The values of all runs of a figure, by its name.
declare -A samples

# collect PREFIX COMMAND...: adds the runs that a command prints, a line "FIGURE VALUE" for each, to
# the figures of that prefix.
collect() {
  local prefix=$1 figure value output
  shift
  output=$("$@")
  while read -r figure value; do
    samples[$prefix$figure]+=" $value"
  done <<<"$output"
}

# timed FIGURE COMMAND...: runs a command and prints its milliseconds as those of the figure.
timed() {
  local figure=$1 begin end
  shift
  begin=$EPOCHREALTIME
  "$@" >/dev/null
  end=$EPOCHREALTIME
  awk -v figure="$figure" -v begin="$begin" -v end="$end" \
    'BEGIN { printf "%s %.3f\n", figure, (end - begin) * 1000 }'
}

# row TEXT MODULES MEASURED BASELINE UNIT RULE [MUST [GOAL]]: a row of the table, of two figures by
# their names; nothing when the first was not measured. The rules are in bench/row.awk.
row() {
  [[ ${samples[$3]-} ]] || return 0
  awk -v text="$1" -v modules="$2" -v measured="${samples[$3]}" -v baseline="${4:+${samples[$4]-}}" \
    -v unit="$5" -v rule="$6" -v must="${7-}" -v goal="${8-}" -f bench/row.awk
}

table_head() {
  echo "| figure; what it is compared with | modules | measured | baseline | ratio | spread | must | goal | result |"
  echo "| --- | ---: | ---: | ---: | ---: | ---: | ---: | ---: | --- |"
}
