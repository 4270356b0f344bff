; expect: 2:16: expected '(' to open the sorts of the arguments, got 'Bool'
(declare-fun f Bool)
