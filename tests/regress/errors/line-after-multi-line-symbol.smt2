; expect: 5:8: unknown symbol 'none'
(declare-const |two
lines| Bool)
(assert (and |two
lines| none))
