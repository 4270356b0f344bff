; expect: 2:1: '#|' is neither a literal nor a symbol
#| done |#
(check-sat)
