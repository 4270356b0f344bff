; expect: 2:6: expected a numeral, got '#x1'
(pop #x1)
