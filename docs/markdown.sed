# A filter between the pages and Doxygen: it knows no links within a page, and takes @ for a command of its own.
s/\]\(#[a-z-]+\)/]/g
s/(^|[ |`])@/\1\\@/g
