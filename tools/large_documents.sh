#!/usr/bin/env bash
# Makes documents of a gibibyte and tells what reading them costs, without a policy and hardened.
#   tools/large_documents.sh DESCRIBE_PMML FOLDER
# FOLDER gets 3 GiB. Without a policy, the document with a tree takes 17 GiB of memory.
set -euo pipefail

describe=$1
folder=$2
readonly kSize=$((1 << 30))
mkdir -p "$folder"

# repeat HEAD PIECE TAIL: HEAD, PIECE over and over up to the size, TAIL.
repeat() {
  printf '%s' "$1"
  { yes "$2" || true; } | head -n "$((kSize / ${#2}))" | tr -d '\n'
  printf '%s' "$3"
}

readonly kHead='<PMML version="4.2" xmlns="http://www.dmg.org/PMML-4_2"><Header/><DataDictionary>
<DataField name="x" optype="continuous" dataType="double"/></DataDictionary>
<TreeModel functionName="regression"><MiningSchema><MiningField name="x"/></MiningSchema>
<Node id="0"><True/>'
readonly kNode='<Node id="1" score="0.5" recordCount="10"><SimplePredicate field="x" operator="lessOrEqual" value="0.25"/></Node>'

repeat "$kHead" "$kNode" '</Node></TreeModel></PMML>' >"$folder/tree.pmml"
repeat '<PMML a="' 'some text, ' '"/>' >"$folder/attribute.pmml"
repeat '<PMML>' 'some text, ' '</PMML>' >"$folder/text.pmml"

# measure OPTION... FILE
measure() {
  local status=0
  /usr/bin/time -f '%U s, %M KiB at most' "$describe" "$@" >"$folder/out" 2>"$folder/err" || status=$?
  printf '%-45s status %d, %s\n' "${*/#"$folder"\//}" "$status" "$(tail -n 1 "$folder/err")"
  grep -vE '^Command exited|KiB at most$' "$folder/err" | head -n 2 | cut -c1-150
}

for document in tree attribute text; do
  measure "$folder/$document.pmml"
  measure --hardened "$folder/$document.pmml"
done
rm -r "$folder"
