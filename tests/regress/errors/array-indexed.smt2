; expect: 2:21: the sort Array takes no indices
(declare-const a (_ Array 8 8))
