; expect: 2:15: the sort 'Array' is already defined
(declare-sort Array 2)
