library(testthat)
library(statpower)

test_check("statpower")
