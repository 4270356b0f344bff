; expect: 2:38: const: the element must be of (_ FloatingPoint 5 11), got a term of Bool
(assert (= (_ NaN 5 11) (select ((as const (Array Bool Float16)) true) true)))
