#!/usr/bin/env bash
# Makes documents of a gibibyte and tells what reading them costs, without a policy and hardened.
#   tools/large_documents.sh DESCRIBE_PMML FOLDER
# FOLDER gets 3 GiB. Without a policy, the document with a tree takes 16 GiB of memory.
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
<DataField name="the day of the interview" optype="continuous" dataType="double"/></DataDictionary>
<TreeModel functionName="regression"><MiningSchema><MiningField name="the day of the interview"/></MiningSchema>
<Node id="0"><True/>'
kNode='<Node id="1000000" score="0.51230000000000" recordCount="1000000"><SimplePredicate '
kNode+='field="the day of the interview" operator="lessOrEqual" value="2450123.25000000"/></Node>'
readonly kNode

repeat "$kHead" "$kNode" '</Node></TreeModel></PMML>' >"$folder/tree.pmml"
repeat '<PMML a="' 'some text, ' '"/>' >"$folder/attribute.pmml"
repeat '<PMML>' 'some text, ' '</PMML>' >"$folder/text.pmml"

# measure OPTION... FILE
measure() {
  local status=0
  /usr/bin/time -f '%U s, %M KiB at most' "$describe" "$@" >"$folder/out" 2>"$folder/err" || status=$?
  printf '%-45s status %d, %s\n' "${*/#"$folder"\//}" "$status" "$(tail -n 1 "$folder/err")"
  grep -vE '^Command exited|KiB at most$' "$folder/err" | cut -c1-150 || true
}

for document in tree attribute text; do
  measure "$folder/$document.pmml"
  measure --hardened "$folder/$document.pmml"
done
rm -r "$folder"
