; expect: 2:2: declare-datatype is not supported
(declare-datatype D ((c)))
