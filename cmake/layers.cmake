# A layer is one folder of src/ as an object library that sees only the layers named after NEEDS.
# Its tests link nothing above it, so an upward call does not even link.
function(keldll_layer name)
  cmake_parse_arguments(layer "" "" "SOURCES;NEEDS;LIBRARIES" ${ARGN})
  add_library(keldll_${name} OBJECT ${layer_SOURCES})
  target_include_directories(keldll_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  list(TRANSFORM layer_NEEDS PREPEND keldll_ OUTPUT_VARIABLE needed)
  target_link_libraries(keldll_${name} PRIVATE keldll_warnings PUBLIC ${needed} ${layer_LIBRARIES})
  set_property(TARGET keldll_${name} PROPERTY KELDLL_NEEDS ${layer_NEEDS})
endfunction()

# Sets `result` to the layer and all layers below it.
function(keldll_layers_from name result)
  set(pending ${name})
  set(layers "")
  while(pending)
    list(POP_FRONT pending layer)
    if(NOT layer IN_LIST layers)
      list(APPEND layers ${layer})
      get_property(needs TARGET keldll_${layer} PROPERTY KELDLL_NEEDS)
      list(APPEND pending ${needs})
    endif()
  endwhile()
  set(${result} ${layers} PARENT_SCOPE)
endfunction()

# Links `target` with the objects of a layer and of all layers below it.
function(keldll_link_layer target name)
  keldll_layers_from(${name} layers)
  foreach(layer IN LISTS layers)
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:keldll_${layer}>)
  endforeach()
  target_link_libraries(${target} PRIVATE keldll_${name})
endfunction()

# keldll_library(core LAYERS preview setup) makes the library KelDll::core of layers and those below
# them, without the layers ABOVE which it begins and what stands below these.
function(keldll_library name)
  cmake_parse_arguments(library "" "" "LAYERS;ABOVE" ${ARGN})
  set(layers "")
  foreach(top IN LISTS library_LAYERS)
    keldll_layers_from(${top} more)
    list(APPEND layers ${more})
  endforeach()
  list(REMOVE_DUPLICATES layers)
  foreach(top IN LISTS library_ABOVE)
    keldll_layers_from(${top} held_elsewhere)
    list(REMOVE_ITEM layers ${held_elsewhere})
  endforeach()
  list(TRANSFORM layers REPLACE "(.+)" "$<TARGET_OBJECTS:keldll_\\1>" OUTPUT_VARIABLE objects)
  add_library(keldll_${name} ${objects})
  add_library(KelDll::${name} ALIAS keldll_${name})
  set_target_properties(keldll_${name} PROPERTIES EXPORT_NAME ${name})
  target_compile_features(keldll_${name} PUBLIC cxx_std_20)
  target_include_directories(keldll_${name} INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/keldll>)
endfunction()
