; expect: 2:18: unknown symbol 'const'; an array of one value is written ((as const sort) value)
(assert (select (const true) true))
