; expect: 2:2: declare-sort is not supported
(declare-sort S 0)
