# Prints one row of the table. Variables: text, modules; measured and baseline, the values of all runs
# separated by blanks; unit; must and goal, which may be empty; rule:
#
#   ratio      measured / baseline is at most the limit
#   above-one  the same, but the ratio cannot be below 1 because the work includes that of the baseline
#   faster     baseline / measured is at least the limit
#   value      measured is at most the limit

function number(value) {
  if (unit == "ms" && value >= 1000) return sprintf("%.2f s", value / 1000)
  if (unit == "ms") return sprintf(value < 0.1 ? "%.4f ms" : "%.3g ms", value)
  if (unit == "bytes") {
    value = value > int(value) ? int(value) + 1 : int(value)
    return value < 1000 ? value " bytes" : sprintf("%d,%03d bytes", value / 1000, value % 1000)
  }
  return sprintf("%.3g %s", value, unit)
}

# Sets median and spread, the range of the runs relative to the median. Also sets unsteady if the
# spread is more than 15 %. Returns the spread as text.
function evaluate(list,    values, count, i, j, value) {
  count = split(list, values, " ")
  for (i = 2; i <= count; i++) {
    value = values[i] + 0
    for (j = i - 1; j >= 1 && values[j] + 0 > value; j--) values[j + 1] = values[j]
    values[j + 1] = value
  }
  median = values[int((count + 1) / 2)] + 0
  spread = median ? (values[count] - values[1]) / median : 0
  if (spread > 0.15) unsteady = 1
  return sprintf(spread > 0.15 ? "**%.0f %%**" : "%.0f %%", 100 * spread)
}

# Returns the median of the ratios of each run to the baseline run next to it, since a machine that is
# slower for a while slows down both. 0 if their numbers differ.
function median_of_pairs(    values, bases, count, i, list) {
  count = split(measured, values, " ")
  if (split(baseline, bases, " ") != count) return 0
  for (i = 1; i <= count; i++) list = list " " values[i] / bases[i]
  evaluate(list)
  return median
}

# Returns "met", "hair" or "missed"; "hair" if the limit is met by less than a tenth.
function judge(limit,    room) {
  limit += 0
  if (rule == "faster") return figure < limit ? "missed" : figure < 1.1 * limit ? "hair" : "met"
  # The baseline itself is not counted, since no figure can be below it.
  room = rule == "above-one" ? limit - 1 : limit
  return figure > limit ? "missed" : figure > limit - room / 10 ? "hair" : "met"
}

function limit_text(limit) {
  if (limit == "") return ""
  if (rule == "faster") return limit " times"
  return rule == "value" ? number(limit) : limit
}

BEGIN {
  spreads = evaluate(measured)
  value = median
  figure = value
  if (baseline != "") {
    spreads = spreads " / " evaluate(baseline)
    baseline_text = number(median)
    figure = value / median
    steady = unsteady
    if (paired = median_of_pairs()) figure = paired
    unsteady = steady
    if (rule == "faster") figure = 1 / figure
    ratio = rule == "faster" ? sprintf("%.1f times", figure) : sprintf("%.3f", figure)
  }
  if (must != "") {
    must_result = judge(must)
    goal_result = goal == "" ? "missed" : judge(goal)
    result = must_result == "missed" ? "**missed**" \
      : must_result == "hair" ? "must by a hair" \
      : goal_result == "met" ? "goal met" \
      : goal_result == "hair" ? "must met, goal by a hair" : "must met"
  }
  if (unsteady) result = result (result == "" ? "" : ", ") "unsteady"
  printf "| %s | %s | %s | %s | %s | %s | %s | %s | %s |\n", text, modules, number(value),
    baseline_text, ratio, spreads, limit_text(must), limit_text(goal), result
}
