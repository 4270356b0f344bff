; expect: 2:2: declare-datatypes is not supported
(declare-datatypes ((D 0)) (((c))))
