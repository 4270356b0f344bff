; expect: 2:19: expected the name of a sort, but 'par' is a reserved word
(declare-const f (par (X) X))
