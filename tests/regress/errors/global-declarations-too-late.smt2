; expect: 8:13: :global-declarations must be set before the first declaration
(declare-const x Float32)
(declare-const y Float16)
(declare-const r RoundingMode)
(declare-const b (_ BitVec 8))
(declare-const c (_ BitVec 16))
(declare-const p Bool)
(set-option :global-declarations true)
