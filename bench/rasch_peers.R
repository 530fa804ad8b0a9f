# The peers of estimation_bench: psychotools fits the same persons without a hessian. Milliseconds, and
# the largest gap in persons between an observed and an expected item margin at its estimates.
suppressMessages(library(psychotools))

state <- 1
draw <- function() {
  state <<- (state * 16807) %% 2147483647
  state / 2147483647
}
sample_of <- function(n, top, persons) {
  state <<- 1
  beta <- -1.5 + 3 * (seq_len(n) - 1) / (n - 1)
  shift <- if (top > 1) (1:top - (top + 1) / 2) * 0.5 else 0
  data <- matrix(0L, persons, n)
  for (p in seq_len(persons)) {
    theta <- -6
    for (k in 1:12) theta <- theta + draw()
    for (i in seq_len(n)) {
      w <- cumprod(c(1, exp(theta - beta[i] - shift)))
      rest <- draw() * sum(w)
      x <- top
      while (x > 0 && rest >= w[x + 1]) {
        rest <- rest - w[x + 1]
        x <- x - 1
      }
      data[p, i] <- x
    }
  }
  data
}

# Polynomials by convolution; threshold parameters cumulated within items.
convolve1 <- function(g, f) {
  out <- numeric(length(g) + length(f) - 1)
  for (x in seq_along(f)) out[x:(x + length(g) - 1)] <- out[x:(x + length(g) - 1)] + f[x] * g
  out
}
gap <- function(data, thresholds) {
  n <- tabulate(rowSums(data) + 1, sum(lengths(thresholds)) + 1)
  eps <- lapply(thresholds, function(t) exp(-cumsum(c(0, t))))
  g <- Reduce(convolve1, eps, 1)
  max(sapply(seq_along(eps), function(i) {
    rest <- Reduce(convolve1, eps[-i], 1)
    max(sapply(seq_along(eps[[i]]), function(x) {
      s <- seq_along(rest) + x - 1
      abs(sum(data[, i] == x - 1) - sum(n[s] * eps[[i]][x] * rest / g[s]))
    }))
  }))
}

time <- function(name, data, fit) {
  model <- fit(data)
  t <- lapply(threshpar(model, type = "mode"), as.numeric)
  ms <- min(replicate(7, {
    k <- 0
    start <- proc.time()[["user.self"]]
    while (proc.time()[["user.self"]] - start < 0.5) {
      fit(data)
      k <- k + 1
    }
    (proc.time()[["user.self"]] - start) / k
  })) * 1000
  cat(sprintf("%-40s %8.2f ms   gap %.2g\n", name, ms, gap(data, t)))
}
rasch <- sample_of(30, 1, 1000)
credit <- sample_of(24, 2, 316)
for (tol in c(1e-6, 1e-10)) {
  time(sprintf("raschmodel, 30 items, reltol %g", tol), rasch,
       function(d) raschmodel(d, reltol = tol, hessian = FALSE))
  time(sprintf("pcmodel, 24 items, reltol %g", tol), credit,
       function(d) pcmodel(d, reltol = tol, hessian = FALSE))
}
