; expect: 2:7: expected a numeral, got '-1'
(push -1)
