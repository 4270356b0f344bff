(declare-const |a\b| (Float32)) ; é(declare-sort U 02)
(define-fun f ((v Float32)) Float32 (fp.neg v))(push)
(assert (and (xor (= |a\b| (f (f ((_ to_fp 8 24) RNE (* 2.0 (+ -1.5 (- 3 1 07))) (- 30))))))))
(assert (distinct ((_ to_fp 8 24) RTZ (/ 1 3 7.0) 99999999999999) (f (f |a\b|))))
(set-option :timeout 1)(set-option :regular-output-channel "stdout")(pop)(check-sat)
