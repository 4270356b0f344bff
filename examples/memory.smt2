; A program writes a Float32 into memory, byte by byte, and then a byte through another pointer. Can
; what it reads back be another number? Only if the pointers meet.
(set-logic QF_ABVFP)
(define-sort Address () (_ BitVec 32))
(define-sort Memory () (Array Address (_ BitVec 8)))
(define-fun write ((m Memory) (a Address) (v (_ BitVec 32))) Memory
  (store (store (store (store m
    a ((_ extract 7 0) v))
    (bvadd a #x00000001) ((_ extract 15 8) v))
    (bvadd a #x00000002) ((_ extract 23 16) v))
    (bvadd a #x00000003) ((_ extract 31 24) v)))
(define-fun read ((m Memory) (a Address)) Float32
  ((_ to_fp 8 24) (concat
    (select m (bvadd a #x00000003)) (select m (bvadd a #x00000002))
    (select m (bvadd a #x00000001)) (select m a))))

(declare-const before Memory)
(declare-const p Address)
(declare-const q Address)
(declare-const v (_ BitVec 32))
(declare-const b (_ BitVec 8))
(define-const after Memory (store (write before p v) q b))
(assert (distinct (read after p) ((_ to_fp 8 24) v)))

(set-info :status sat)
(check-sat)

(assert (bvuge (bvsub q p) #x00000004))
(set-info :status unsat)
(check-sat)
