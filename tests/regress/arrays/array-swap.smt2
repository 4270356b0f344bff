; Two swaps of the same cells leave an array as it was.
(set-logic QF_ABVFP)
(define-sort Mem () (Array (_ BitVec 32) Float32))
(define-fun swap ((m Mem) (i (_ BitVec 32)) (j (_ BitVec 32))) Mem
  (let ((x (select m i)) (y (select m j))) (store (store m i y) j x)))
(declare-const a Mem)
(declare-const i (_ BitVec 32))
(declare-const j (_ BitVec 32))
(assert (distinct (swap (swap a i j) j i) a))
(set-info :status unsat)
(check-sat)
