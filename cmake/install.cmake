# What `cmake --install` puts where. Component "agent" is the host's that runs the agent, "simulator" the
# simulator alone, "exporter" the management station's.
include(GNUInstallDirs)
set(SYSTEMD_DIR lib/systemd CACHE STRING "Folder of systemd's units, below the prefix or absolute")

install(TARGETS snmpmain RUNTIME DESTINATION ${CMAKE_INSTALL_SBINDIR} COMPONENT agent)
install(TARGETS switchsim RUNTIME COMPONENT simulator)

# What names other installed files is made at installation, when the prefix is known for good.
set(made ${PROJECT_BINARY_DIR}/installed)
install(CODE "
    set(PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_SBINDIR}/snmpmain\")
    set(DATA \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_DATADIR}/snmpmain\")
    configure_file(\"${PROJECT_SOURCE_DIR}/dist/snmpmain.service.in\" \"${made}/snmpmain.service\" @ONLY)
    configure_file(\"${PROJECT_SOURCE_DIR}/dist/snmpmain.tmpfiles.in\" \"${made}/snmpmain.conf\" @ONLY)"
    COMPONENT agent)
install(FILES ${made}/snmpmain.service DESTINATION ${SYSTEMD_DIR}/system COMPONENT agent)
install(FILES ${made}/snmpmain.conf DESTINATION lib/tmpfiles.d COMPONENT agent)
install(DIRECTORY dist/snmpd.service.d DESTINATION ${SYSTEMD_DIR}/system COMPONENT agent)
install(FILES dist/snmpd.local.conf DESTINATION ${CMAKE_INSTALL_DATADIR}/snmpmain COMPONENT agent)

# The modules lie where net-snmp's tools look. Those of mib/base stand in for others that a host may have
# whole, and therefore in a folder that has to be named.
file(GLOB modules CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/mib/*.txt)
install(FILES ${modules} DESTINATION ${CMAKE_INSTALL_DATADIR}/snmp/mibs COMPONENT agent)
install(DIRECTORY mib/base/ DESTINATION ${CMAKE_INSTALL_DATADIR}/snmpmain/mibs COMPONENT agent)

# Manual pages. scdoc dates a page by SOURCE_DATE_EPOCH where that is set.
find_program(SCDOC scdoc REQUIRED)
foreach(page snmpmain.8 switchsim.1 fcexporter.8)
    configure_file(docs/man/${page}.scd ${made}/${page}.scd @ONLY)
    add_custom_command(OUTPUT ${made}/${page} DEPENDS ${made}/${page}.scd
        COMMAND ${SCDOC} <${made}/${page}.scd >${made}/${page})
    list(APPEND pages ${made}/${page})
endforeach()
add_custom_target(manual ALL DEPENDS ${pages})
install(FILES ${made}/snmpmain.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8 COMPONENT agent)
install(FILES ${made}/switchsim.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT simulator)

set(documents alarms link-protocol objects operations security)
list(TRANSFORM documents PREPEND docs/)
list(TRANSFORM documents APPEND .md)
install(FILES CHANGELOG.md ${documents} DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT agent)
install(FILES docs/switchsim.md DESTINATION ${CMAKE_INSTALL_DOCDIR}-simulator COMPONENT simulator)

if(TARGET fcexporter)
    install(TARGETS fcexporter RUNTIME COMPONENT exporter)
    install(CODE "
        set(PROGRAM \"\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}/fcexporter\")
        configure_file(\"${PROJECT_SOURCE_DIR}/dist/fcexporter.service.in\" \"${made}/fcexporter.service\" @ONLY)"
        COMPONENT exporter)
    install(FILES ${made}/fcexporter.service DESTINATION ${SYSTEMD_DIR}/system COMPONENT exporter)
    install(FILES ${made}/fcexporter.8 DESTINATION ${CMAKE_INSTALL_MANDIR}/man8 COMPONENT exporter)
    install(PROGRAMS dist/fc-trap-json DESTINATION lib/fcexporter COMPONENT exporter)
    install(FILES dist/fcexporter.toml dist/prometheus/fcexporter.rules.yml
        DESTINATION ${CMAKE_INSTALL_DATADIR}/fcexporter COMPONENT exporter)
    install(FILES docs/exporter.md DESTINATION ${CMAKE_INSTALL_DOCDIR}-exporter COMPONENT exporter)
endif()
