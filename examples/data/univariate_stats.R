#!/usr/bin/env Rscript
#
# Writes airquality_stats.pmml: one rpart regression tree on the whole of R's air quality data, with
# the univariate statistics of its fields as R computes them.
#
# Usage: Rscript univariate_stats.R [output folder]     (default: the folder of this script)
#
# Two runs write the same bytes: nothing here depends on the clock, the locale or chance.

script_file <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
source(file.path(dirname(script_file), "fit_split_trees.R"), local = FALSE)

# ---- PMML: statistics ------------------------------------------------------------------------

# totalFreq counts every row, those with a missing value too.
counts <- function(x) {
  empty_element("Counts", totalFreq = length(x), missingFreq = sum(is.na(x)), invalidFreq = 0,
                cardinality = length(unique(x[!is.na(x)])))
}

numeric_info <- function(x) {
  x <- x[!is.na(x)]
  quartiles <- quantile(x, 1:3 / 4)
  children <- vapply(1:3, function(i) {
    empty_element("Quantile", quantileLimit = 25 * i, quantileValue = exact(quartiles[[i]]))
  }, "")
  element("NumericInfo",
          attrs(minimum = exact(min(x)), maximum = exact(max(x)), mean = exact(mean(x)),
                standardDeviation = exact(sd(x)), median = exact(median(x)),
                interQuartileRange = exact(IQR(x))),
          children)
}

int_array <- function(counts) {
  paste0("<Array", attrs(n = length(counts), type = "int"), ">", paste(counts, collapse = " "),
         "</Array>")
}

# `breaks` are the ends of the intervals; an infinite one leaves the attribute out.
cont_stats <- function(breaks, counts) {
  margin <- function(x) if (is.finite(x)) exact(x)
  last <- length(counts)
  intervals <- vapply(seq_along(counts), function(i) {
    closed <- i == last && is.finite(breaks[i + 1])
    empty_element("Interval", closure = if (closed) "closedClosed" else "closedOpen",
                  leftMargin = margin(breaks[i]), rightMargin = margin(breaks[i + 1]))
  }, "")
  element("ContStats", "", c(intervals, int_array(counts)))
}

# The frequencies are those of the categories in the order of the dictionary.
discr_stats <- function(x) {
  counts <- table(x)
  element("DiscrStats", attrs(modalValue = names(counts)[which.max(counts)]),
          int_array(as.vector(counts)))
}

# Intervals hold their left ends; hist() puts the maximum into the last one.
continuous_stats <- function(x, breaks) {
  if (is.null(breaks)) {
    bins <- hist(x, right = FALSE, plot = FALSE)
    return(cont_stats(bins$breaks, bins$counts))
  }
  classes <- cut(x, breaks, right = FALSE)
  cont_stats(breaks, as.vector(table(classes)))
}

univariate_stats <- function(name, x, breaks) {
  children <- if (is.factor(x)) c(counts(x), discr_stats(x))
              else c(counts(x), numeric_info(x), continuous_stats(x, breaks))
  element("UnivariateStats", attrs(field = name), children)
}

model_stats <- function(set) {
  fields <- lapply(c(set$inputs, set$target),
                   function(n) univariate_stats(n, set$data[[n]], set$breaks[[n]]))
  element("ModelStats", "", unlist(fields))
}

# ---- The document ----------------------------------------------------------------------------

month_field <- function(months) {
  values <- vapply(levels(months), function(m) {
    empty_element("Value", value = m, property = "valid", displayValue = month.name[as.integer(m)])
  }, "")
  element("DataField",
          attrs(name = "Month", displayName = "Month of 1973", optype = "categorical",
                dataType = "integer"),
          unname(values))
}

# The dictionary and the tree are those of the other trees; the month's labels and the statistics
# are put in where they belong.
with_statistics <- function(lines, set) {
  text <- trimws(lines)
  month <- grep("^<DataField name=\"Month\"", text)
  end <- month - 1 + which(text[month:length(text)] == "</DataField>")[1]
  schema <- which(text == "</MiningSchema>")
  c(lines[seq_len(month - 1)], paste0("    ", month_field(set$data$Month)),
    lines[(end + 1):schema], paste0("    ", model_stats(set)),
    lines[(schema + 1):length(lines)])
}

air_quality <- function() {
  rows <- datasets::airquality
  rows$Month <- factor(rows$Month)
  rows
}

statistics_set <- list(
  name = "airquality_stats", title = "Ozone in New York", data = air_quality(),
  inputs = c("Month", "Solar.R", "Wind", "Temp"), predictors = c("Solar.R", "Wind", "Temp"),
  target = "Ozone", minsplit = 20, cp = 0.02,
  labels = list(Month = "Month of 1973", Solar.R = "Solar radiation (Langley)",
                Wind = "Wind speed (mph)", Temp = "Highest temperature (F)",
                Ozone = "Ozone (ppb)"),
  breaks = list(Wind = c(-Inf, 4, 7, 10, 13, 16, Inf)))

write_statistics <- function(set, root) {
  fit <- fit_tree(set, set$data)
  lines <- pmml_document(set, "1973, with statistics", set$data, fit, NULL)
  write_lines(with_statistics(lines, set), file.path(root, paste0(set$name, ".pmml")))
}

arguments <- commandArgs(TRUE)
write_statistics(statistics_set, if (length(arguments) > 0) arguments[1] else script_folder())
