; expect: 2:7: expected a numeral, got '1.5'
(push 1.5)
