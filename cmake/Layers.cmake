# The folders, lowest first, and whom each may include from. The test "layers" holds every #include against this table, and
# vardelin_library() takes its link dependencies from it, so an arrow that isn't here doesn't build.
set(VARDELIN_LAYERS
  platform/base platform/system platform/jet platform/sql platform/data platform/rich platform/ui
  shell/state database entry display contacts shell)

set(uses_platform/base "")
set(uses_platform/system platform/base)
set(uses_platform/jet "")
set(uses_platform/sql platform/base platform/jet)
set(uses_platform/data platform/base platform/jet platform/sql)
set(uses_platform/rich platform/base)
set(uses_platform/ui platform/base platform/system platform/data platform/rich)
set(uses_shell/state ${uses_platform/ui} platform/ui)
set(uses_database ${uses_shell/state} shell/state)
set(uses_entry ${uses_database} database)
set(uses_display ${uses_database} database)
set(uses_contacts ${uses_database} database)
set(uses_shell ${uses_entry} entry display contacts)
set(uses_app ${uses_shell} shell)

# platform/jet is plain C++ and knows nothing of Qt; these are the Qt modules of the others.
set(qt_platform/base Core)
set(qt_platform/system Core)
set(qt_platform/sql Core)
set(qt_platform/data Core)
set(qt_platform/rich Gui)
set(qt_platform/ui Widgets)
set(qt_shell/state Widgets)
set(qt_database Widgets)
set(qt_entry Widgets)
set(qt_display Widgets)
set(qt_contacts Widgets)
set(qt_shell Widgets)
