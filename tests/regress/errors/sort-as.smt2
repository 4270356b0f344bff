; expect: 2:19: expected the name of a sort, but 'as' is a reserved word
(declare-const f (as Bool Bool))
