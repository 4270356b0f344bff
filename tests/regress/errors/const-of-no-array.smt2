; expect: 2:22: const: expected an array sort, got Bool
(assert (select ((as const Bool) true) true))
