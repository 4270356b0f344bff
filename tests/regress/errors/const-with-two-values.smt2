; expect: 2:22: const takes 1 argument, got 2
(assert (select ((as const (Array Bool Bool)) true false) true))
