(set-info :source |two
lines|)
(set-info :status sat)
(set-info :list (a (b "c") 1.5 #b1 :key))
(set-info :alone)
(get-info :name)(get-info :version)(get-info :authors)
(get-info :error-behavior)(get-info :assertion-stack-levels)
(get-info :all-statistics)(get-info :other)
