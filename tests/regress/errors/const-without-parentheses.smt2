; expect: 2:21: unknown symbol 'const'; an array of one value is written ((as const sort) value)
(assert (select (as const (Array Bool Bool)) true))
