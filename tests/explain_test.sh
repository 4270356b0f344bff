#!/usr/bin/env bash
# vorn explain, and the pictures of vorn encode.
#   explain_test.sh VORN SOURCE-DIRECTORY
set -u
vorn=$1
root=$2
# shellcheck source=tests/check.sh
source "$(dirname "${BASH_SOURCE[0]}")/check.sh"

skip() { echo "SKIPPED: $1 is not installed"; }

# The result is that of vorn eval, whatever the operation, format, mode and encoder.
lines=()
for rm in rne rtz rtp rtn rna; do
  for formats in '8 23 00800001 3e800001' '8 23 80000000 00000000' '8 23 7f7fffff 7f7fffff' '3 3 0b 51' \
    '5 10 7c01 fc00' '11 52 3fb999999999999a 3fc999999999999a' '2 20 1 100000' '15 112 1 3fff0000000000000000000000000003'; do
    read -r e m a b <<<"$formats"
    for op in add sub mul div; do lines+=("$op $rm $e $m $a $b"); done
    lines+=("fma $rm $e $m $a $b $a" "sqrt $rm $e $m $a" "rti $rm $e $m $b" "cast $rm $e $m 4 5 $b" "cast $rm $e $m 16 113 $a"
      "to_sbv $rm $e $m 9 $b" "to_ubv $rm $e $m 7 $b")
  done
  lines+=("from_sbv $rm 9 5 2 1ff" "from_ubv $rm 32 5 10 ffffffff" "from_sbv $rm 1 3 3 1")
done
for op in rem min max eq lt le; do lines+=("$op 5 10 4500 4000" "$op 5 10 8000 0000" "$op rne 5 10 7c01 fc00"); done
for op in neg abs isnan isinf iszero isnormal issubnormal isnegative ispositive; do lines+=("$op 5 10 8001" "$op 5 10 7c00"); done
compared=0
for encoder in ieee base; do
  mapfile -t answers < <(printf '%s\n' "${lines[@]}" | "$vorn" eval --encoder $encoder)
  for i in "${!lines[@]}"; do
    # Every seventh line, and what the base encoder does not have.
    ((i % 7 == 0)) || [[ $encoder == base && ${answers[i]} == error* && $i -lt 60 ]] || continue
    read -r -a words <<<"${lines[i]}"
    explained=$("$vorn" explain --json --encoder $encoder "${words[@]}" 2>"$dir/err") || explained="error: $(cat "$dir/err")"
    result=$(sed -n '/"result": {/,/}/s/.*"hex": "\([0-9a-f]*\)".*/\1/p' <<<"$explained")
    [[ $explained == *'leaves this result open'* ]] && result=unspecified
    [[ $explained == error* ]] && result=error
    answer=${answers[i]}
    [[ $answer == error* ]] && answer=error
    if [[ $result == "$answer" ]]; then
      passed=$((passed + 1))
      compared=$((compared + 1))
    else
      failed=$((failed + 1))
      echo "FAILED --encoder $encoder ${lines[i]}: explained $result, evaluated $answer"
    fi
  done
done
check results_were_compared 0 '^yes$' '' bash -c "(($compared >= 100)) && echo yes"

# What a table holds.
add=(add rne 8 23 3f800000 40000000)
check table 0 $'^add rne 8 23 3f800000 40000000\noperands\n  rm .*RNE.*\nunpack\n.*\nalign\n.*\nadd\n.*\npack\n.*\nresult\n.*\nvalue\n  result  +32  0 10000000 10{22} +40400000  3.0 = 0x1.8p\\+1$' \
  '^$' "$vorn" explain "${add[@]}"
check one_word 0 'add_exp1 +8  00000000 +00 +0' '^$' "$vorn" explain "${add[*]}"
check departure 0 'note: IEEE 754 has 00200001 here, 2.938737e-39 = 0x0.400002p-126$' '^$' \
  "$vorn" explain --encoder base mul rne 8 23 00800001 3e800001
check excluded 0 'note: the constraints of this circuit contradict' '^$' "$vorn" explain --encoder base add rne 8 23 bf800000 3f800000
check folded 0 'note: this encoder has no circuit of variables' '^$' "$vorn" explain --encoder base div rne 4 2 08 09
check open 0 'note: the theory leaves this result open' '^$' "$vorn" explain to_ubv rne 5 10 8 7c00
check second_occurrence 0 'norm_shift_exp \(2\) ' '^$' "$vorn" explain div rne 5 10 3c00 4200
check subnormal 0 $'scale_mant .*  0\\.010{21}10{22}1 \\* 2\\^-126\n  scale_field +12  0{12} +000 +0, zero or subnormal\n' '^$' \
  "$vorn" explain mul rne 8 23 00800001 3e800001
check too_large 0 $'round_kept .* 3f7ffffe +too large\n  round_body .* too large\n.*pack_magnitude .* \\+oo\n' '^$' \
  "$vorn" explain mul rne 8 23 7f7fffff 7f7fffff

# Errors.
check no_words 2 '^$' 'OPERATION\|FILE is required' "$vorn" explain
check unknown_option 2 '^$' '--frob' "$vorn" explain --frob "${add[@]}"
check unknown_encoder 2 '^$' 'other' "$vorn" explain --encoder other "${add[@]}"
check unknown_operation 1 '^$' "^error: unknown operation 'frob'$" "$vorn" explain frob rne 8 23 1 1
check no_operands 1 '^$' '^error: add takes 5 arguments, got 0$' "$vorn" explain add
check free_operands 1 '^$' '^error: add takes 5 arguments, got 3$' "$vorn" explain add rne 8 23
check free_operand 1 '^$' "^error: '_' is no hexadecimal number$" "$vorn" explain add rne 8 23 _ 1
check too_many 1 '^$' '^error: rem takes 4 or 5 arguments, got 6$' "$vorn" explain rem rne 8 23 1 1 1
check bad_mode 1 '^$' "^error: 'up' is no rounding mode" "$vorn" explain add up 8 23 1 1
check bad_format 1 '^$' "^error: '1' is no exponent width" "$vorn" explain add rne 1 23 1 1
check wide_pattern 1 '^$' "^error: '1ff' has more than 8 bits$" "$vorn" explain from_ubv rne 8 5 10 1ff
check base_mode 1 '^$' '^error: not supported by this encoder: .*Away' "$vorn" explain --encoder base add rna 8 23 1 1
check base_operation 1 '^$' '^error: not supported by this encoder$' "$vorn" explain --encoder base sqrt rne 8 23 1
check base_format 1 '^$' '^error: not supported by this encoder: ' "$vorn" explain --encoder base mul rne 8 1 3f 3f
check missing_file 1 '^$' 'none.smt2: error: .*No such file' "$vorn" explain "$dir/none.smt2"
check directory 1 '^$' 'error: is a directory' "$vorn" explain "$dir"

# Scripts.
script sat.smt2 '(declare-const x Float16)(declare-const |a "b" \xc3\xa9| (_ BitVec 8))(define-fun s () Float16 (fp.add RNE x x))
(assert (= x (fp #b0 #b01111 #b0000000001)))(assert (fp.lt x s))(assert (fp.eq s (fp.mul RNE x ((_ to_fp 5 11) RNE |a "b" \xc3\xa9|))))
(assert (fp.isNegative (fp.min (_ -zero 5 11) (_ +zero 5 11))))(assert (= ((_ fp.to_ubv 8) RTZ (_ NaN 5 11)) #xa5))
(check-sat)\n(assert false)(check-sat)\n'
check script 0 $'^sat\n\n\\(fp.add roundNearestTiesToEven x x\\)\noperands\n.*\n\n\\(fp.lt x \\(fp.add roundNearestTiesToEven x x\\)\\)\n.*\n\n\\(\\(_ to_fp 5 11\\) .*\n\n\\(fp.mul .*\n\n\\(fp.eq .*\n\n\\(fp.min .*\n\n\\(fp.isNegative .*\n\n\\(\\(_ fp.to_ubv 8\\) .*  a5 ' \
  'sat.smt2: note: only the first of 2 checks is explained' "$vorn" explain "$dir/sat.smt2"
check shared_terms_once 0 '^8$' '' bash -c "'$vorn' explain '$dir/sat.smt2' 2>'$dir/null' | grep -c '^operands'"
check open_values_of_the_model 0 'select_result +16  1 00000 0000000000 ' '' "$vorn" explain "$dir/sat.smt2"
check standard_input 0 '^sat' '^<stdin>: note' bash -c "'$vorn' explain - <'$dir/sat.smt2'"
script deep.smt2 "(declare-const x Float16)$(for ((i = 0; i < 400; ++i)); do printf '(define-fun f%d () Float16 (fp.neg %s))' "$i" "$([[ $i -eq 0 ]] && echo x || echo "f$((i - 1))")"; done)(assert (fp.isNaN f399))(check-sat)"
check long_terms 0 $'\n\\(fp.isNaN \\(fp.neg [^\n]{0,110}\\.\\.\\.\n' '^$' "$vorn" explain "$dir/deep.smt2"
script unsat.smt2 '(declare-const x Float16)(assert (fp.lt x x))(check-sat)'
check unsat 0 '^unsat$' 'unsat.smt2: note: there is no model, so there are no values to show' "$vorn" explain "$dir/unsat.smt2"
check unsat_json 0 '"answer": "unsat",.*"operations": \[\][[:space:]]*\}$' '' "$vorn" explain --json "$dir/unsat.smt2"
script unknown.smt2 '(declare-const x Float32)(assert (fp.isSubnormal x))(check-sat)'
script departs.smt2 '(assert (distinct (fp.mul RNE (fp #b0 #x01 #b00000000000000000000001) (fp #b0 #x7d #b00000000000000000000001)) (fp #b0 #x00 #b01000000000000000000001)))(check-sat)'
check unknown 0 '^unknown$' 'departs.smt2: note: there are no values to show: ' "$vorn" explain --encoder base "$dir/departs.smt2"
check unsupported 1 '^$' 'unknown.smt2:1:.*error: fp.isSubnormal is not supported' "$vorn" explain --encoder base "$dir/unknown.smt2"
script nothing.smt2 '(declare-const x Float16)'
check no_check 1 '^$' 'error: the script has no check-sat' "$vorn" explain "$dir/nothing.smt2"
script wrong.smt2 '(assert y)'
check wrong_script 1 '^$' "wrong.smt2:1:9: error: unknown symbol 'y'" "$vorn" explain "$dir/wrong.smt2"
script plain.smt2 '(declare-const p Bool)(assert p)(check-sat)'
check no_operations 0 '^sat$' '^$' "$vorn" explain "$dir/plain.smt2"

# JSON.
if command -v python3 >"$dir/null"; then
  cat >"$dir/read.py" <<'PY'
import json, struct, sys
from fractions import Fraction

def check_reading(value):
    bits, reading = value["bits"], value["reading"]
    number = int(bits.replace(" ", ""), 2)
    signed = number - 2 ** value["width"] if bits[0] == "1" else number
    kind = value["kind"]
    if kind == "flag":
        assert reading == ("yes" if number else "no"), value
    elif kind == "sign":
        assert reading == "+-"[number], value
    elif kind == "exponent":
        assert int(reading) == signed, value
    elif kind == "count":
        assert int(reading) == number, value
    elif kind.endswith("significand"):
        # What stands before the power of two is the number that the bits are with that point.
        digits = reading.split(" * ")[0]
        fraction = digits.partition(".")[2]
        read = Fraction(int(digits.replace(".", ""), 2), 2 ** len(fraction))
        places = len(bits.partition(" ")[2])
        assert read == Fraction(signed if kind[:6] == "signed" else number, 2 ** places), value
    elif kind == "float" and value["width"] == 64 and " = " in reading:
        decimal, exact = reading.split(" = ")
        x = struct.unpack(">d", bytes.fromhex(value["hex"]))[0]
        assert repr(float(decimal)) == repr(x) == repr(float.fromhex(exact)), value
    else:
        return 0
    return 1

data = json.load(sys.stdin)
assert data["schema"] == 1 and data["encoder"] == "ieee", data
for operation in data["operations"]:
    values = operation["operands"] + operation["intermediates"] + [operation["result"]]
    for value in values:
        bits = value["bits"].replace(" ", "")
        assert len(bits) == value["width"] and int(bits, 2) == int(value["hex"], 16), value
    readings = sum(check_reading(value) for value in values)
    assert readings > 0 or not operation["intermediates"], operation
    # The power of two of an operand's significand is the operand's exponent.
    exponents = {v["label"]: v["reading"] for v in operation["intermediates"]}
    for value in operation["intermediates"]:
        label, _, power = value["label"], *value["reading"].partition(" * 2^")[1:]
        if value["stage"] == "unpack" and "_mant" in label and power:
            assert power == exponents[label.replace("mant", "exp")], value
    assert all(list(v) == ["label", "occurrence", "stage", "kind", "width", "bits", "hex", "reading"]
               for v in operation["intermediates"]), operation
    assert list(operation["result"]) == ["label", "kind", "width", "bits", "hex", "reading"], operation
    assert list(operation) == ["operation", "term", "operands", "intermediates", "result", "notes"], operation
assert list(data) == ["schema", "encoder", "answer", "operations"], data
print(data["answer"], len(data["operations"]))
PY
  check json_of_operation 0 '^None 1$' '' bash -c "'$vorn' explain --json ${add[*]} | python3 '$dir/read.py'"
  for op in 'add rtp 11 52 3fb999999999999a bfc999999999999b' 'mul rne 11 52 0000000000000003 7fe0000000000001' \
    'div rtn 11 52 0008000000000000 c008000000000000' 'fma rna 11 52 3ff0000000000001 3ff0000000000001 bff0000000000000' \
    'sqrt rne 11 52 0000000000000007' 'rem 11 52 7fefffffffffffff 4008000000000000' 'rti rne 11 52 4004000000000000' \
    'cast rne 8 23 11 52 00000001' 'min 11 52 c000000000000000 8000000000000000' 'lt 11 52 0000000000000001 8000000000000001'; do
    check "json $op" 0 '^None 1$' '' bash -c "'$vorn' explain --json '$op' | python3 '$dir/read.py'"
  done
  check json_of_script 0 '^sat 8$' '' bash -c "'$vorn' explain --json '$dir/sat.smt2' | python3 '$dir/read.py'"
  script bytes.smt2 '(declare-const |\xff\xc3 \t"| Float16)(assert (fp.isNaN |\xff\xc3 \t"|))(check-sat)'
  check json_of_bytes 0 '^sat 1$' '' bash -c "'$vorn' explain --json '$dir/bytes.smt2' | python3 '$dir/read.py'"
  check bytes_that_are_no_characters 0 $'"term": "\\(fp.isNaN \\|\xef\xbf\xbd\xef\xbf\xbd  \\\\"\\|\\)"' '' "$vorn" explain --json "$dir/bytes.smt2"
  check json_without_operations 0 '^sat 0$' '' bash -c "'$vorn' explain --json '$dir/plain.smt2' | python3 '$dir/read.py'"
else
  skip python3
fi

# Pictures.
check dot 0 $'^digraph circuit \\{\n.*label="unpack".*label="multiply".*label="round".*label="mul_mant' '^$' \
  "$vorn" encode --op 'mul rne 3 3' --to dot
check dot_free_mode 0 'label="rm : 3", shape=ellipse' '^$' "$vorn" encode --op 'add _ 3 3 _ 18' --to dot
check dot_of_base 0 'label="choice : [0-9]+", shape=diamond' '^$' "$vorn" encode --op 'mul rne 3 3' --to dot --encoder base
check dot_of_script 0 'label="\|a \\"b\\" .*label="assert"' 'only the first of 2 checks' "$vorn" encode --to dot "$dir/sat.smt2"
check op_needs_dot 2 '^$' '--op goes with --to dot' "$vorn" encode --op 'mul rne 3 3' --to smt2
check op_or_file 2 '^$' 'excludes' "$vorn" encode --op 'mul rne 3 3' --to dot "$dir/sat.smt2"
check bad_op 1 '^$' "^frob 3 3: error: unknown operation 'frob'$" "$vorn" encode --op 'frob 3 3' --to dot
check unsupported_op 1 '^$' '^sqrt rne 3 3: error: not supported by this encoder$' "$vorn" encode --op 'sqrt rne 3 3' --to dot --encoder base
check unsupported_op_format 1 '^$' '^mul rne 3 1: error: not supported by this encoder: ' "$vorn" encode --op 'mul rne 3 1' --to dot --encoder base -o "$dir/none.dot"
check no_file_after_an_error 1 '' '' test -e "$dir/none.dot"
# Names, and what they are at: titles and texts of a picture, whatever the layout.
outline() { grep -oE '<(title|text)[^>]*>[^<]*' | sed 's/^<title>/title /; s/^<text[^>]*>/text /' | sort; }
if command -v dot >"$dir/null"; then
  for op in 'mul rne 3 3' 'add _ 3 3' 'fma rne 2 2' 'lt 3 3' 'neg 3 3 11' 'to_sbv rtz 3 3 4'; do
    check "dot $op" 0 '</svg>' '^$' bash -c "'$vorn' encode --op '$op' --to dot | dot -Tsvg"
  done
  check dot_base 0 '</svg>' '^$' bash -c "'$vorn' encode --op 'div rne 3 3' --encoder base --to dot | dot -Tsvg"
  check dot_script 0 '</svg>' '' bash -c "'$vorn' encode '$dir/sat.smt2' --to dot | dot -Tsvg"
  "$vorn" encode --op 'mul rne 3 3' --to dot | dot -Tsvg | outline >"$dir/drawn"
  outline <"$root/docs/mul-3-3.svg" >"$dir/shown"
  check picture_of_the_manual 0 '^$' '^$' diff "$dir/drawn" "$dir/shown"
  check picture_has_nodes 0 '^[1-9][0-9][0-9]' '' bash -c "wc -l <'$dir/shown'"
else
  skip dot
fi

summary
