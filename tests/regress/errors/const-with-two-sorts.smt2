; expect: 2:33: expected ')' behind the sort, got 'Bool'
(assert (select ((as const Bool Bool) true) true))
