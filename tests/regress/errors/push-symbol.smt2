; expect: 2:7: expected a numeral, got 'n'
(push n)
