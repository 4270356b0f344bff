; expect: 2:9: expected a term, got 'forall'
(assert forall)
