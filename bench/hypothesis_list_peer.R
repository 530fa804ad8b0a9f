# The lists of hypothesis_list_bench.cpp in R: strata by one number a combination of Z, counted by
# tabulate, and the chi-square of all strata in whole arrays. Milliseconds for the list; for long ones
# 25 hypotheses are run and the time multiplied.
variables <- 20; R <- 3
codes <- function(n) {
  case <- as.numeric(seq_len(n))
  sapply(1:variables, function(v) {
    x <- sin(case * 12.9898 + v * 78.233) * 43758.5453
    as.integer(1 + floor((x - floor(x)) * R))
  })
}
test <- function(data, k, size) {
  at <- 1 + (k + 0:(size + 1)) %% variables
  pair <- sort(at[1:2]); z <- sort(at[-(1:2)])
  key <- rep(0, nrow(data))
  for (v in rev(z)) key <- key * R + data[, v] - 1
  found <- unique(key)
  g <- match(key, found)
  G <- length(found)
  n <- array(tabulate(data[, pair[1]] + R * (data[, pair[2]] - 1) + R * R * (g - 1), R * R * G),
             c(R, R, G))
  rows <- colSums(aperm(n, c(2, 1, 3))); cols <- colSums(n)
  total <- colSums(rows)
  df <- sum(pmax(colSums(rows > 0) - 1, 0) * pmax(colSums(cols > 0) - 1, 0))
  e <- n
  for (i in 1:R) for (j in 1:R) e[i, j, ] <- rows[i, ] * cols[j, ] / total
  x2 <- sum(((n - e)^2 / e)[e > 0])
  c(x2, df, pchisq(x2, df, lower.tail = FALSE))
}
for (cases in c(1000, 20000, 1000000)) {
  data <- codes(cases)
  for (size in c(3, 6, 12)) {
    count <- if (cases == 1000000) 25 else 2500
    run <- if (cases == 1000) 250 else if (cases == 20000) 25 else 3
    time <- system.time(for (k in 0:(run - 1)) test(data, k, size))[["elapsed"]]
    cat(sprintf("Z %2d  cases %7d  hypotheses %4d  %9.0f ms\n", size, cases, count,
                1000 * time * count / run))
  }
}
cat("first hypothesis, 6 in Z, 1000 cases:", format(test(codes(1000), 0, 6), digits = 10), "\n")
