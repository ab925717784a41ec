#!/usr/bin/env bash
# Runs the libFuzzer programs of a build, as many at a time as there are cores, and prints a table.
#   fuzz/run.sh BUILD_DIR [SECONDS] [TARGET...]      60 seconds each, every target
# BUILD_DIR keeps corpus/TARGET, which grows from run to run, logs/TARGET.log and
# findings/TARGET; what was found before is tried again. Ends with 1 if there is any finding.
set -euo pipefail

die() {
  printf 'fuzz: %s\n' "$*" >&2
  exit 1
}

# max_len and the dictionaries of a target.
settings() {
  case "$1" in
    xml_round_trip) echo 2048 xml ;;
    *_reader | split_combiner) echo 2048 xml "$1" ;;
    combiner_steps) echo 1024 xml split_combiner ;;
    hardened_parsing) echo 1024 xml ;;
    converter_registry) echo 400 "$1" ;;
    ext_name) echo 400 ;;
    number_attribute | xml_transcoder) echo 128 ;;
    *) echo 512 ;;
  esac
}

reads_documents() {
  case "$1" in
    *_reader | split_combiner | xml_round_trip) return 0 ;;
    *) return 1 ;;
  esac
}

# A single target. Always succeeds: the table tells what happened.
run_one() {
  local target=$1 name max_len dictionaries options=() seeds=("fuzz/corpus/$1")
  local corpus=$build/corpus/$target findings=$build/findings/$target log=$build/logs/$target.log
  mkdir -p "$corpus" "$findings"
  read -r max_len dictionaries < <(settings "$target")
  if [ -n "$dictionaries" ]; then
    for name in $dictionaries; do
      cat "fuzz/dictionaries/$name.dict"
    done >"$build/logs/$target.dict"
    options+=(-dict="$build/logs/$target.dict")
  fi
  if reads_documents "$target"; then seeds+=(examples/data); fi
  echo "$target" >&2
  "$build/fuzz/fuzz_$target" "${options[@]}" -max_len="$max_len" -max_total_time="$seconds" \
    -timeout=25 -rss_limit_mb=2560 -print_final_stats=1 -artifact_prefix="$findings/" \
    "$corpus" "${seeds[@]}" "$findings" >"$log" 2>&1 || echo "ended with status $?" >>"$log"
}

# The last number behind a word of the log; 0 where it never came that far.
last_number() {
  grep -oE "$1 *[0-9]+" "$2" | tail -n 1 | grep -oE '[0-9]+$' || echo 0
}

findings_of() {
  grep -c 'Test unit written to' "$build/logs/$1.log" || true
}

print_table() {
  local target log found
  printf '\n%-20s %12s %8s %7s %8s %7s %9s\n' \
    target executions 'exec/s' cov ft corpus findings
  for target in "${targets[@]}"; do
    log=$build/logs/$target.log
    found=$(findings_of "$target")
    if [ "$found" = 0 ] && grep -q '^ended with status' "$log"; then found=failed; fi
    printf '%-20s %12s %8s %7s %8s %7s %9s\n' "$target" \
      "$(last_number 'number_of_executed_units:' "$log")" \
      "$(last_number 'average_exec_per_sec:' "$log")" \
      "$(last_number 'cov:' "$log")" "$(last_number 'ft:' "$log")" \
      "$(last_number 'corp:' "$log")" "$found"
  done
}

# What to do about them. 1 if there are any.
print_findings() {
  local target log result=0
  for target in "${targets[@]}"; do
    log=$build/logs/$target.log
    grep -q '^ended with status' "$log" || continue
    result=1
    printf '\n%s: see %s\n' "$target" "$log"
    grep -E 'not so:|ERROR:|SUMMARY:|Test unit written' "$log" || tail -n 3 "$log"
    [ "$(findings_of "$target")" != 0 ] || continue
    printf 'Once it is mended, keep the input: cp %s/FILE fuzz/corpus/%s/TELLING_NAME\n' \
      "$build/findings/$target" "$target"
  done
  return "$result"
}

[ $# -ge 1 ] || die 'which build folder?'
build=$1
shift
seconds=60
if [[ ${1:-} =~ ^[0-9]+$ ]]; then
  seconds=$1
  shift
fi
targets=("$@")
if [ ${#targets[@]} -eq 0 ]; then
  for program in "$build"/fuzz/fuzz_*; do
    targets+=("${program##*/fuzz_}")
  done
fi
for target in "${targets[@]}"; do
  [ -x "$build/fuzz/fuzz_$target" ] || die "there is no target $target in $build"
done

# An allocation that is refused for its size is a finding, and so is undefined behaviour.
export ASAN_OPTIONS=allocator_may_return_null=0:detect_leaks=1:quarantine_size_mb=64
export UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1
mkdir -p "$build/logs"
jobs=$(nproc)
for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do wait -n; done
  run_one "$target" &
done
wait
print_table
print_findings
