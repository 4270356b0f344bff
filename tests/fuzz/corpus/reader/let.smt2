(declare-const p Bool)
(assert (let ((p (not p)) (q p)) (let ((p q) (|q| p)) (= p |q|))))
(assert (let ((half 0.5) (x (/ 1 3.0))) (fp.lt ((_ to_fp 3 5) RNE half) ((_ to_fp 3 5) RTZ (- x)))))
(check-sat)
