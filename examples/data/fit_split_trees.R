#!/usr/bin/env Rscript
#
# Fits one rpart decision tree per split of data sets that come with R, and writes for each set
#   <set>/<split>.pmml   the tree of one split, as PMML 4.4
#   <set>/rows.csv       the data rows, with the prediction that R itself makes for each
#   <set>/manifest.csv   which split values belong to which tree
#
# Usage: Rscript fit_split_trees.R [output folder]     (default: the folder of this script)
#
# Two runs write the same bytes: nothing here depends on the clock, the locale or chance.

library(rpart)

# ---- Text ------------------------------------------------------------------------------------

# Seventeen significant digits bring every double back unchanged.
exact <- function(x) ifelse(is.na(x), "", sprintf("%.17g", x))

# Data as people write them; the measurements have a few digits only, so nothing is lost.
plain <- function(x) {
  if (is.numeric(x)) ifelse(is.na(x), "", sprintf("%.15g", x))
  else ifelse(is.na(x), "", as.character(x))
}

xml_text <- function(text) {
  text <- gsub("&", "&amp;", text, fixed = TRUE)
  text <- gsub("<", "&lt;", text, fixed = TRUE)
  text <- gsub(">", "&gt;", text, fixed = TRUE)
  gsub("\"", "&quot;", text, fixed = TRUE)
}

# attrs(a = "1", b = NULL) gives ' a="1"': a null attribute is left out.
attrs <- function(...) {
  given <- Filter(Negate(is.null), list(...))
  paste0(" ", names(given), "=\"", xml_text(unlist(lapply(given, as.character))), "\"",
         collapse = "")
}

# The tag is not called `name`: that would catch the attribute of this name.
empty_element <- function(tag, ...) paste0("<", tag, attrs(...), "/>")

# `children` are lines; they come back indented between the start and the end tag.
element <- function(tag, attributes, children) {
  if (length(children) == 0) return(paste0("<", tag, attributes, "/>"))
  c(paste0("<", tag, attributes, ">"), paste0("  ", children), paste0("</", tag, ">"))
}

write_lines <- function(lines, path) {
  out <- file(path, "wb")
  on.exit(close(out))
  writeLines(enc2utf8(lines), out, sep = "\n", useBytes = TRUE)
}

# RFC 4180: a cell is quoted when it holds a comma, a quotation mark or a line end.
csv_cell <- function(text) {
  quoted <- paste0("\"", gsub("\"", "\"\"", text, fixed = TRUE), "\"")
  ifelse(grepl("[\",\r\n]", text), quoted, text)
}

write_csv <- function(columns, path) {
  cells <- lapply(columns, csv_cell)
  lines <- do.call(paste, c(unname(cells), sep = ","))
  write_lines(c(paste(csv_cell(names(columns)), collapse = ","), lines), path)
}

# ---- PMML: dictionaries ----------------------------------------------------------------------

data_type <- function(x) {
  if (is.factor(x)) "string" else if (is.integer(x)) "integer" else "double"
}

# The interval is that of the whole data set and not that of the split: in a combined document the
# first split's interval stays, and a value outside of it would count as invalid.
data_field <- function(name, label, split_column, whole_column) {
  if (is.factor(split_column)) {
    children <- vapply(levels(split_column),
                       function(v) empty_element("Value", value = v, property = "valid"), "")
  } else {
    range <- range(whole_column, na.rm = TRUE)
    children <- empty_element("Interval", closure = "closedClosed",
                              leftMargin = plain(range[1]), rightMargin = plain(range[2]))
  }
  optype <- if (is.factor(split_column)) "categorical" else "continuous"
  element("DataField",
          attrs(name = name, displayName = label, optype = optype,
                dataType = data_type(whole_column)),
          unname(children))
}

data_dictionary <- function(set, rows) {
  names <- c(set$inputs, set$target)
  fields <- lapply(names, function(n) data_field(n, set$labels[[n]], rows[[n]], set$data[[n]]))
  element("DataDictionary", attrs(numberOfFields = length(names)), unlist(fields))
}

discretize_bin <- function(bin, left, right) {
  closure <- if (is.null(left)) "openOpen" else "closedOpen"
  interval <- empty_element("Interval", closure = closure, leftMargin = left, rightMargin = right)
  element("DiscretizeBin", attrs(binValue = bin), interval)
}

transformation_dictionary <- function(derived) {
  if (is.null(derived)) return(NULL)
  margins <- exact(derived$cuts)
  bins <- lapply(seq_along(derived$bins), function(i) {
    discretize_bin(derived$bins[i],
                   if (i > 1) margins[i - 1],
                   if (i < length(derived$bins)) margins[i])
  })
  discretize <- element("Discretize", attrs(field = derived$from), unlist(bins))
  field <- element("DerivedField",
                   attrs(name = derived$name, displayName = derived$label,
                         optype = "categorical", dataType = "string"),
                   discretize)
  element("TransformationDictionary", "", field)
}

mining_schema <- function(set) {
  fields <- c(vapply(set$inputs, function(n) empty_element("MiningField", name = n), ""),
              empty_element("MiningField", name = set$target, usageType = "target"))
  element("MiningSchema", "", unname(fields))
}

# ---- PMML: the tree --------------------------------------------------------------------------

# The two predicates of the split at frame row `row`: left child, right child.
split_predicates <- function(fit, row) {
  inner <- fit$frame$var != "<leaf>"
  # Without competing splits and surrogates, each inner node has one row of `splits`.
  split <- fit$splits[sum(inner[seq_len(row)]), ]
  field <- as.character(fit$frame$var[row])
  if (abs(split[["ncat"]]) == 1) return(cut_predicates(field, split))
  sides <- fit$csplit[split[["index"]], seq_len(split[["ncat"]])]
  levels <- attr(fit, "xlevels")[[field]]
  c(set_predicate(field, levels[sides == 1]), set_predicate(field, levels[sides == 3]))
}

cut_predicates <- function(field, split) {
  operators <- c("lessThan", "greaterOrEqual")
  if (split[["ncat"]] > 0) operators <- rev(operators)
  vapply(operators, function(op) {
    empty_element("SimplePredicate", field = field, operator = op, value = exact(split[["index"]]))
  }, "")
}

set_predicate <- function(field, values) {
  if (length(values) == 1) {
    return(empty_element("SimplePredicate", field = field, operator = "equal", value = values))
  }
  array <- paste0("<Array", attrs(n = length(values), type = "string"), ">",
                  paste0("\"", xml_text(values), "\"", collapse = " "), "</Array>")
  paste0("<SimpleSetPredicate", attrs(field = field, booleanOperator = "isIn"), ">", array,
         "</SimpleSetPredicate>")
}

node_score <- function(fit, row) {
  if (fit$method != "class") return(exact(fit$frame$yval[row]))
  attr(fit, "ylevels")[fit$frame$yval[row]]
}

# The columns of `yval2`: the class, then the counts by class, then the probabilities by class.
score_distribution <- function(fit, row) {
  if (fit$method != "class") return(NULL)
  classes <- attr(fit, "ylevels")
  numbers <- fit$frame$yval2[row, ]
  vapply(seq_along(classes), function(k) {
    empty_element("ScoreDistribution", value = classes[k], recordCount = exact(numbers[1 + k]),
                  probability = exact(numbers[1 + length(classes) + k]))
  }, "")
}

# rpart numbers the children of node n as 2n and 2n + 1.
tree_node <- function(fit, id, predicate) {
  ids <- as.integer(row.names(fit$frame))
  row <- match(id, ids)
  children <- NULL
  if (fit$frame$var[row] != "<leaf>") {
    predicates <- split_predicates(fit, row)
    children <- c(tree_node(fit, 2L * id, predicates[1]),
                  tree_node(fit, 2L * id + 1L, predicates[2]))
  }
  element("Node",
          attrs(id = id, score = node_score(fit, row), recordCount = fit$frame$n[row]),
          c(predicate, score_distribution(fit, row), children))
}

# rpart without surrogates leaves a row whose split value is missing (or a category that the node
# never saw) in the node that it has reached: PMML's last prediction.
tree_model <- function(set, fit) {
  element("TreeModel",
          attrs(modelName = set$name,
                functionName = if (fit$method == "class") "classification" else "regression",
                algorithmName = "rpart", missingValueStrategy = "lastPrediction",
                noTrueChildStrategy = "returnLastPrediction", splitCharacteristic = "binarySplit"),
          c(mining_schema(set), tree_node(fit, 1L, "<True/>")))
}

pmml_document <- function(set, split, rows, fit, derived) {
  header <- element("Header", attrs(description = paste0(set$title, ", ", split)),
                    c(empty_element("Application", name = "R rpart",
                                    version = as.character(packageVersion("rpart"))),
                      "<Timestamp>2024-01-01T00:00:00Z</Timestamp>"))
  c("<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
    element("PMML", attrs(version = "4.4", xmlns = "http://www.dmg.org/PMML-4_4"),
            c(header, data_dictionary(set, rows), transformation_dictionary(derived),
              tree_model(set, fit))))
}

# ---- Fitting ---------------------------------------------------------------------------------

# Categories that a split does not have are dropped, so that its dictionary declares what it saw.
drop_unused <- function(rows) {
  factors <- vapply(rows, is.factor, TRUE)
  rows[factors] <- lapply(rows[factors], droplevels)
  rows
}

# Thirds of the split's own values: each split bins the same field at cut points of its own.
thirds <- function(rows, from, name, label) {
  cuts <- round(unname(quantile(rows[[from]], 1:2 / 3)), 1)
  list(from = from, name = name, label = label, cuts = cuts, bins = c("low", "middle", "high"))
}

bin_column <- function(rows, derived) {
  factor(derived$bins[findInterval(rows[[derived$from]], derived$cuts) + 1], levels = derived$bins)
}

fit_tree <- function(set, rows) {
  classes <- is.factor(rows[[set$target]])
  rpart(reformulate(set$predictors, set$target), data = rows,
        method = if (classes) "class" else "anova",
        control = rpart.control(minsplit = set$minsplit, cp = set$cp, xval = 0, maxcompete = 0,
                                maxsurrogate = 0, usesurrogate = 0))
}

prediction_columns <- function(fit, rows) {
  if (fit$method != "class") return(list(prediction = exact(predict(fit, rows))))
  probabilities <- predict(fit, rows, type = "prob")
  columns <- lapply(colnames(probabilities), function(k) exact(probabilities[, k]))
  names(columns) <- paste0("probability_", colnames(probabilities))
  c(list(prediction = as.character(predict(fit, rows, type = "class"))), columns)
}

# One split: writes its tree and gives back its lines of rows.csv.
write_split <- function(set, values, folder) {
  keep <- Reduce(`&`, Map(function(n, v) as.character(set$data[[n]]) == v, set$by, values))
  rows <- drop_unused(set$data[keep, ])
  derived <- if (!is.null(set$derive)) set$derive(rows)
  if (!is.null(derived)) rows[[derived$name]] <- bin_column(rows, derived)
  fit <- fit_tree(set, rows)
  split <- paste(set$by, values, sep = " ", collapse = ", ")
  write_lines(pmml_document(set, split, rows, fit, derived), file.path(folder, model_file(values)))
  data.frame(lapply(rows[c(set$by, set$inputs, set$target)], plain), prediction_columns(fit, rows),
             check.names = FALSE)
}

model_file <- function(values) {
  paste0(gsub("[^A-Za-z0-9]+", "-", paste(values, collapse = "-")), ".pmml")
}

# All combinations of the split variables' values, the last variable changing fastest.
split_table <- function(set) {
  values <- lapply(rev(set$by), function(n) {
    column <- set$data[[n]]
    if (is.factor(column)) levels(column) else as.character(sort(unique(column)))
  })
  table <- rev(expand.grid(values, stringsAsFactors = FALSE))
  names(table) <- set$by
  table
}

write_set <- function(set, root) {
  folder <- file.path(root, set$name)
  dir.create(folder, recursive = TRUE, showWarnings = FALSE)
  splits <- split_table(set)
  rows <- lapply(seq_len(nrow(splits)), function(i) write_split(set, unlist(splits[i, ]), folder))
  write_csv(do.call(rbind, rows), file.path(folder, "rows.csv"))
  splits$model <- apply(splits, 1, model_file)
  write_csv(splits, file.path(folder, "manifest.csv"))
  cat(sprintf("%-10s %2d trees, %4d rows\n", set$name, nrow(splits), sum(vapply(rows, nrow, 1L))))
}

# ---- The data sets ---------------------------------------------------------------------------

# One row per person on board, from the table of counts.
titanic_rows <- function() {
  counts <- as.data.frame(datasets::Titanic)
  counts[rep(seq_len(nrow(counts)), counts$Freq), c("Class", "Sex", "Age", "Survived")]
}

# Plant is an ordered factor there; a tree that splits it into sets needs a plain one.
co2_rows <- function() {
  rows <- as.data.frame(datasets::CO2)
  rows$Plant <- factor(as.character(rows$Plant), levels = levels(rows$Plant))
  rows
}

infert_rows <- function() {
  rows <- datasets::infert
  rows$case <- factor(rows$case, levels = 0:1, labels = c("control", "case"))
  for (n in c("age", "parity", "induced", "spontaneous")) rows[[n]] <- as.integer(rows[[n]])
  rows
}

# inputs: the fields of the dictionary; predictors: what the tree may split on.
sets <- list(
  list(name = "iris", title = "Petal width of irises", data = datasets::iris, by = "Species",
       inputs = c("Sepal.Length", "Sepal.Width", "Petal.Length"),
       predictors = c("Sepal.Length", "Sepal.Width", "Petal.Length"),
       target = "Petal.Width", minsplit = 10, cp = 0.01,
       labels = list(Sepal.Length = "Sepal length (cm)", Sepal.Width = "Sepal width (cm)",
                     Petal.Length = "Petal length (cm)", Petal.Width = "Petal width (cm)")),
  list(name = "airquality", title = "Ozone in New York in 1973", data = datasets::airquality,
       by = "Month", inputs = c("Solar.R", "Wind", "Temp"),
       predictors = c("Solar.R", "WindThird", "Temp"),
       derive = function(rows) thirds(rows, "Wind", "WindThird", "Wind among that of the month"),
       target = "Ozone", minsplit = 6, cp = 0.01,
       labels = list(Solar.R = "Solar radiation (Langley)", Wind = "Wind speed (mph)",
                     Temp = "Highest temperature (F)", Ozone = "Ozone (ppb)")),
  list(name = "co2", title = "Carbon dioxide uptake of grass plants", data = co2_rows(),
       by = c("Type", "Treatment"), inputs = c("Plant", "conc"), predictors = c("Plant", "conc"),
       target = "uptake", minsplit = 5, cp = 0.001,
       labels = list(Plant = "Plant", conc = "Ambient CO2 (mL/L)",
                     uptake = "CO2 uptake (umol/m^2 s)")),
  list(name = "titanic", title = "Survival on the Titanic", data = titanic_rows(), by = "Class",
       inputs = c("Sex", "Age"), predictors = c("Sex", "Age"), target = "Survived",
       minsplit = 10, cp = -1,  # keeps splits that sharpen the odds but not the class
       labels = list(Sex = "Sex", Age = "Child or adult", Survived = "Survived the sinking")),
  list(name = "infert", title = "Infertility after abortion", data = infert_rows(),
       by = "education", inputs = c("age", "parity", "induced", "spontaneous"),
       predictors = c("age", "parity", "induced", "spontaneous"), target = "case",
       minsplit = 8, cp = 0.01,
       labels = list(age = "Age in years", parity = "Number of births",
                     induced = "Induced abortions", spontaneous = "Spontaneous abortions",
                     case = "Case or control")))

script_folder <- function() {
  file <- sub("^--file=", "", grep("^--file=", commandArgs(FALSE), value = TRUE))
  if (length(file) == 1) dirname(file) else "."
}

# Nothing is written when another script takes the functions from here.
if (sys.nframe() == 0L) {
  arguments <- commandArgs(TRUE)
  root <- if (length(arguments) > 0) arguments[1] else script_folder()
  for (set in sets) write_set(set, root)
}
